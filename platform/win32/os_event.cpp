// The named event of the end of a run: a manual-reset event, so that it
// stays set for every process that holds it open.
#include "platform/win32/win32.h"

#include "platform/os.h"

namespace os {

bool set_named_event(const std::string& name) {
    HANDLE event = CreateEventA(nullptr, TRUE, FALSE, name.c_str());
    if (event == nullptr) return false;
    const bool set = SetEvent(event) != FALSE;
    CloseHandle(event);
    return set;
}

}  // namespace os

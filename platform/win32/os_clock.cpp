// The clock of the C runtime (seconds and milliseconds) and Sleep.
#include "platform/win32/win32.h"

#include <sys/timeb.h>

#include "platform/os.h"
#include "platform/time_scale.h"

namespace os {

void clock_now(std::uint64_t& unix_seconds, std::uint32_t& milliseconds) {
    __timeb64 now{};
    _ftime64(&now);
    unix_seconds = now.time < 0 ? 0 : static_cast<std::uint64_t>(now.time);
    milliseconds = now.millitm;
}

void clock_precise(std::uint64_t& unix_seconds, std::uint32_t& nanoseconds) {
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    std::uint64_t ticks = (static_cast<std::uint64_t>(now.dwHighDateTime) << 32) | now.dwLowDateTime;
    ticks = ticks < ticks_1601_to_1970 ? 0 : ticks - ticks_1601_to_1970;
    unix_seconds = ticks / ticks_per_second;
    nanoseconds = static_cast<std::uint32_t>(ticks % ticks_per_second) * 100u;
}

void sleep_ms(std::uint32_t milliseconds) { Sleep(milliseconds); }

}  // namespace os

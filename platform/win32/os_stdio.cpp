// Standard streams, console code pages and the start stage's redirection.
// The report stream makes its own CR LF, so the standard output goes out
// untranslated (binary); the standard error keeps the text mode of the
// platform, in which every LF leaves as CR LF. The streams are descriptors 0
// to 2 of the C runtime, so the file calls serve them.
#include "platform/win32/win32.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>

#include "platform/os.h"

namespace os {

namespace {
UINT saved_output_page = 0;
UINT saved_input_page = 0;
bool console_begun = false;

// The redirection functions, looked up once; used only where both exist.
using disable_redirection = BOOL(WINAPI*)(PVOID*);
using revert_redirection = BOOL(WINAPI*)(PVOID);
struct redirection_calls {
    disable_redirection disable = nullptr;
    revert_redirection revert = nullptr;
};

template <typename Function>
Function look_up(HMODULE module, const char* name) {
    // Through void(*)(): the one function type every other one converts to.
    const FARPROC found = module ? GetProcAddress(module, name) : nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(found));
}

const redirection_calls& redirection() {
    static const redirection_calls calls = [] {
        redirection_calls found;
        const HMODULE kernel = LoadLibraryA("kernel32.dll");
        // All three are looked up; switching needs only the last two.
        look_up<FARPROC>(kernel, "Wow64EnableWow64FsRedirection");
        found.disable = look_up<disable_redirection>(kernel, "Wow64DisableWow64FsRedirection");
        found.revert = look_up<revert_redirection>(kernel, "Wow64RevertWow64FsRedirection");
        return found;
    }();
    return calls;
}

PVOID redirection_state = nullptr;
bool redirection_off = false;
}  // namespace

bool write_stdout(const char* bytes, std::size_t count) { return file_write(1, bytes, count) >= 0; }
bool write_stderr(const char* bytes, std::size_t count) { return file_write(2, bytes, count) >= 0; }

std::int64_t read_stdin(char* buffer, std::size_t capacity) { return file_read(0, buffer, capacity); }

// Without it CR LF would reach the list as LF and a ^Z would end it.
bool stdin_binary_mode() { return ::_setmode(::_fileno(stdin), _O_BINARY) != -1; }

bool stdin_exists() {
    const std::intptr_t handle = ::_get_osfhandle(0);
    return handle != -1 && handle != -2;
}

// The code pages are saved and the output one set to UTF-8; an exit handler
// puts both back, however the process ends. Without a console the calls
// fail, which changes nothing.
void console_begin() {
    if (console_begun) return;
    console_begun = true;
    saved_output_page = GetConsoleOutputCP();
    saved_input_page = GetConsoleCP();
    SetConsoleOutputCP(65001);
    ::_setmode(::_fileno(stdout), _O_BINARY);
    std::atexit(console_end);
}

void console_end() {
    if (!console_begun) return;
    SetConsoleOutputCP(saved_output_page);
    SetConsoleCP(saved_input_page);
}

void start_stage_begin() {
    const redirection_calls& calls = redirection();
    if (calls.disable && calls.revert) redirection_off = calls.disable(&redirection_state) != FALSE;
}

void start_stage_end() {
    if (redirection_off) redirection().revert(redirection_state);
    redirection_off = false;
}

}  // namespace os

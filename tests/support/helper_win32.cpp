// A second Windows program for the end-to-end tests of vexa.exe.
//
// helper event NAME: stands for a program that waits for the event of
// -signal. It creates the event (as a waiting program would, so that the
// event exists while the tool runs), says "ready" on its standard output,
// and when its standard input ends tells whether the event was set: exit
// code 0 if it was, 1 if not, 2 if it could not be created.
//
// helper stream PATH: writes a few bytes to PATH, a named stream such as
// "x.txt:alt". Exit code 0 if that worked.
#include <windows.h>

#include <cstdio>
#include <cstring>

namespace {

int watch_event(const char* name) {
    HANDLE event = CreateEventA(nullptr, TRUE, FALSE, name);
    if (event == nullptr) return 2;
    std::fputs("ready\n", stdout);
    std::fflush(stdout);
    char chunk[256];
    while (std::fread(chunk, 1, sizeof chunk, stdin) > 0) {}
    const bool set = WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
    CloseHandle(event);
    return set ? 0 : 1;
}

int write_stream(const char* path) {
    HANDLE file = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 1;
    DWORD written = 0;
    const bool ok = WriteFile(file, "alt", 3, &written, nullptr) && written == 3;
    CloseHandle(file);
    return ok ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "event") == 0) return watch_event(argv[2]);
    if (argc == 3 && std::strcmp(argv[1], "stream") == 0) return write_stream(argv[2]);
    return 2;
}

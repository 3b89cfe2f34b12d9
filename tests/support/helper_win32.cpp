// A second Windows program for the end-to-end tests of vexa.exe, standing for
// a program that waits for the event of -signal: "helper NAME" creates the
// event (so that it exists while the tool runs; an event goes with its last
// handle), says "ready" on its standard output and, when its standard input
// ends, exits 0 if the event was set, 1 if not, 2 if it could not be made.
#include <windows.h>

#include <cstdio>

int main(int argc, char** argv) {
    HANDLE event = argc == 2 ? CreateEventA(nullptr, TRUE, FALSE, argv[1]) : nullptr;
    if (event == nullptr) return 2;
    std::fputs("ready\n", stdout);
    std::fflush(stdout);
    char chunk[256];
    while (std::fread(chunk, 1, sizeof chunk, stdin) > 0) {}
    const bool set = WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
    CloseHandle(event);
    return set ? 0 : 1;
}

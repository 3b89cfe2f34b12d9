// Stands for a second Windows program that waits for the event of -signal:
// it creates the event (as a waiting program would, so that the event exists
// while the tool runs), says "ready" on its standard output, and when its
// standard input ends tells whether the event was set: exit code 0 if it
// was, 1 if not, 2 if it could not be created.
#include <windows.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    HANDLE event = CreateEventA(nullptr, TRUE, FALSE, argv[1]);
    if (event == nullptr) return 2;
    std::fputs("ready\n", stdout);
    std::fflush(stdout);
    char chunk[256];
    while (std::fread(chunk, 1, sizeof chunk, stdin) > 0) {
    }
    const bool set = WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
    CloseHandle(event);
    return set ? 0 : 1;
}

// Standard streams behind the seam. Writes go straight to the descriptors:
// the report stream above does its own buffering and line-end rules.
#include "platform/os.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace os {

namespace {
bool write_all(int fd, const char* bytes, std::size_t count) {
    while (count > 0) {
        ssize_t n = ::write(fd, bytes, count);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes += n;
        count -= static_cast<std::size_t>(n);
    }
    return true;
}
}  // namespace

bool write_stdout(const char* bytes, std::size_t count) { return write_all(1, bytes, count); }
bool write_stderr(const char* bytes, std::size_t count) { return write_all(2, bytes, count); }

std::int64_t read_stdin(char* buffer, std::size_t capacity) {
    ssize_t n;
    do { n = ::read(0, buffer, capacity); } while (n < 0 && errno == EINTR);
    return n < 0 ? -1 : static_cast<std::int64_t>(n);
}

// POSIX streams never translate line ends: binary mode is what they already are.
bool stdin_binary_mode() { return true; }

bool stdin_exists() { return ::fcntl(0, F_GETFD) != -1; }

// The terminal takes UTF-8 bytes as they are; there is no code page to set.
// A reader that goes away makes later writes fail instead of killing the
// process, so the run ends normally with its report cut short.
void console_begin() { std::signal(SIGPIPE, SIG_IGN); }
void console_end() {}

// No file-system redirection to switch off.
void start_stage_begin() {}
void start_stage_end() {}

}  // namespace os

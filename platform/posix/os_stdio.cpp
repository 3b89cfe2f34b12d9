// Standard streams behind the seam. Writes go straight to the descriptors:
// the report stream above does its own buffering and line-end rules. The
// streams are descriptors 0 to 2, so the file calls' retries serve them.
#include "platform/os.h"

#include <csignal>
#include <fcntl.h>

namespace os {

bool write_stdout(const char* bytes, std::size_t count) { return file_write(1, bytes, count) >= 0; }
bool write_stderr(const char* bytes, std::size_t count) { return file_write(2, bytes, count) >= 0; }

std::int64_t read_stdin(char* buffer, std::size_t capacity) { return file_read(0, buffer, capacity); }

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

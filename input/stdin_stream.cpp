#include "input/stdin_stream.h"

#include <cstring>

#include "platform/os.h"

namespace uni {

namespace {
constexpr std::size_t read_chunk = 65536;
}

stdin_stream::stdin_stream() {
    if (os::stdin_exists()) {
        input_.reset(new char[read_chunk]);
        is_open = true;
    }
}

bool stdin_stream::fill() {
    if (at_end_) return false;
    long got = os::read_stdin(input_.get(), read_chunk);
    if (got <= 0) {
        at_end_ = true;
        return false;
    }
    begin_ = 0;
    end_ = static_cast<std::size_t>(got);
    return true;
}

bool stdin_stream::read_line(std::string& text, bool trim) {
    text.clear();
    if (!is_open) return false;
    constexpr std::size_t most = buffer_size - 1;
    bool stored = false;
    bool line_done = false;
    bool cut_at_nul = false;
    std::size_t taken = 0;
    while (!line_done && taken < most) {
        if (begin_ == end_ && !fill()) break;
        const char* start = input_.get() + begin_;
        std::size_t avail = end_ - begin_;
        std::size_t room = most - taken;
        std::size_t span = avail < room ? avail : room;
        const void* lf = std::memchr(start, '\n', span);
        if (lf) {
            span = static_cast<std::size_t>(static_cast<const char*>(lf) - start) + 1;
            line_done = true;
        }
        stored = true;
        // What follows a NUL byte in one line is lost, as with fgets.
        if (!cut_at_nul) {
            const void* nul = std::memchr(start, '\0', span);
            std::size_t keep = nul ? static_cast<std::size_t>(static_cast<const char*>(nul) - start) : span;
            text.append(start, keep);
            cut_at_nul = nul != nullptr;
        }
        begin_ += span;
        taken += span;
    }
    if (!stored) return false;
    if (trim) trim_line_end(text);
    return true;
}

}  // namespace uni

std::size_t trim_line_end(std::string& text) {
    std::size_t before = text.size();
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n')) text.pop_back();
    return before - text.size();
}

#include "input/stdin_stream.h"

#include <cstring>

#include "platform/os.h"
#include "platform/text_convert.h"

namespace uni {

namespace {
constexpr std::size_t read_chunk = 65536;
}

stdin_stream::stdin_stream() {
    if (os::stdin_exists()) {
        line_buffer.reset(new char[read_chunk]);
        open_ = true;
    }
}

bool stdin_stream::fill() {
    // The owner may mark the stream open although there was no input to
    // allocate for; that reads as an empty input.
    if (at_end_ || !line_buffer) return false;
    std::int64_t got = os::read_stdin(line_buffer.get(), read_chunk);
    if (got <= 0) {
        at_end_ = true;
        return false;
    }
    begin_ = 0;
    end_ = static_cast<std::size_t>(got);
    return true;
}

bool stdin_stream::read_piece(std::string& text) {
    text.clear();
    if (!open_) return false;
    constexpr std::size_t most = buffer_size - 1;
    bool line_done = false;
    bool cut_at_nul = false;
    std::size_t taken = 0;
    while (!line_done && taken < most) {
        if (begin_ == end_ && !fill()) break;
        const char* start = line_buffer.get() + begin_;
        std::size_t avail = end_ - begin_;
        std::size_t room = most - taken;
        std::size_t span = avail < room ? avail : room;
        if (const void* lf = std::memchr(start, '\n', span)) {
            span = static_cast<std::size_t>(static_cast<const char*>(lf) - start) + 1;
            line_done = true;
        }
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
    // A failure in mid-line still delivers what came; the next read sees the end.
    return taken > 0;
}

bool stdin_stream::read_line(std::string& text, bool trim) {
    if (!read_piece(text)) return false;
    if (trim) trim_line_end(text);
    return true;
}

}  // namespace uni

namespace kvportdir {

bool stdin_stream_ex::open_stdin() {
    reset();
    open_ = os::stdin_binary_mode();
    return open_;
}

void stdin_stream_ex::reset() {
    pending_dirs.clear();
    pending_paths.clear();
    filters.clear();
    max_depth = 1;
    is_walking = false;
}

bool stdin_stream_ex::read_line(std::string& text, bool trim) {
    if (!is_walking) return stdin_stream::read_line(text, trim);
    std::u16string path;
    if (!next_path(path)) return false;
    text = to_utf8(path);
    return true;
}

}  // namespace kvportdir

std::size_t trim_line_end(std::string& text) {
    std::size_t before = text.size();
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n')) text.pop_back();
    return before - text.size();
}

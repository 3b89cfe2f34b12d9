#pragma once
// The lines of a list: the standard input, read one line at a time on
// demand, or the files of a directory walk handed out like lines. Nothing is
// read ahead beyond one read of the system, so memory stays flat however
// long the list is.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "input/filter_entry.h"

namespace uni {

class stdin_stream {
public:
    stdin_stream();
    stdin_stream(const stdin_stream&) = delete;
    stdin_stream& operator=(const stdin_stream&) = delete;

    // The next line, as fgets would give it: up to and with its LF, or 4095
    // bytes, or what is left at the end; cut at its first NUL byte. With trim,
    // every CR and LF at its end goes. False at the end of the input, and at
    // once while the stream is not open.
    bool read_line(std::string& text, bool trim);

    static constexpr std::int32_t buffer_size = 4096;

protected:
    bool open_ = false;

private:
    // One fgets-sized piece of the input into text, without trimming.
    bool read_piece(std::string& text);
    // Refills line_buffer; false at the end of the input or on failure.
    bool fill();

    // One read of the system; lines are cut from it, so a read costs one
    // system call per chunk, not per line.
    std::unique_ptr<char[]> line_buffer;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool at_end_ = false;
};

}  // namespace uni

namespace kvportdir {

// The input of list mode: the standard input, or, after start_walk, the
// files under a directory as UTF-8 paths.
class stdin_stream_ex : public uni::stdin_stream {
public:
    stdin_stream_ex() = default;

    bool read_line(std::string& text, bool trim);

    // Reads the standard input, in binary mode, with no walk pending. False
    // when it can't be read.
    bool open_stdin();

    // Starts the walk of root down to `depth` levels below it; from now on
    // the reads hand out the paths it finds. Only files whose names pass
    // `filters` are handed out.
    void start_walk(const std::u16string& root, std::uint32_t depth,
                    const std::vector<filter_entry>& walk_filters);

private:
    // The next path of the walk; false when it is over. Lists a directory only
    // once every path found so far has been handed out.
    bool next_path(std::u16string& path);
    void reset();

    // Both are used as stacks, at the back.
    std::deque<std::pair<std::u16string, std::uint32_t>> pending_dirs;
    std::deque<std::u16string> pending_paths;
    std::uint32_t max_depth = 1;
    std::vector<filter_entry> filters;
    bool is_walking = false;
};

}  // namespace kvportdir

// Removes every CR and LF from the end of text; result: how many went.
std::size_t trim_line_end(std::string& text);

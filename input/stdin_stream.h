#pragma once
// The lines of a list: the standard input, read one line at a time on
// demand, with nothing read ahead beyond what one read of the system gives.

#include <cstddef>
#include <memory>
#include <string>

namespace uni {

class stdin_stream {
public:
    stdin_stream();
    virtual ~stdin_stream() = default;
    stdin_stream(const stdin_stream&) = delete;
    stdin_stream& operator=(const stdin_stream&) = delete;

    // The next line, as fgets would give it: up to and with its LF, or 4095
    // bytes, or what is left at the end; cut at its first NUL byte. With trim,
    // every CR and LF at its end goes. False at the end of the input.
    virtual bool read_line(std::string& text, bool trim);

    bool is_open = false;
    static constexpr int buffer_size = 4096;

private:
    // Refills the read buffer; false at the end of the input or on failure.
    bool fill();

    std::unique_ptr<char[]> input_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool at_end_ = false;
};

}  // namespace uni

// Removes every CR and LF from the end of text; result: how many went.
std::size_t trim_line_end(std::string& text);

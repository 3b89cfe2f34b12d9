#pragma once
// A report stream that keeps what reaches its destination in a string, so a
// test or a fuzz target can check what a writer produced. LF arrive as CR LF.

#include <cstddef>
#include <string>

#include "report/output_stream.h"

namespace test_support {

class string_output final : public uni::output_stream {
public:
    // A small buffer by default, so that writes run into its edge often.
    explicit string_output(std::size_t buffer_size = 64) : output_stream(buffer_size) {}
    // Everything written so far, buffered bytes included.
    const std::string& text() {
        flush_buffer();
        return text_;
    }
    void clear() {
        flush_buffer();
        text_.clear();
    }

protected:
    bool write_bytes(const char* bytes, std::size_t count) override {
        text_.append(bytes, count);
        return true;
    }

private:
    std::string text_;
};

}  // namespace test_support

#pragma once
// A report stream for the fuzz targets: keeps what reaches the destination,
// so a target can check what a writer produced.

#include <cstddef>
#include <string>

#include "report/output_stream.h"

class collecting_stream final : public uni::output_stream {
public:
    collecting_stream() : uni::output_stream(4096) {}

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
    void sync() override {}
    bool write_bytes(const char* bytes, std::size_t count) override {
        text_.append(bytes, count);
        return true;
    }

private:
    std::string text_;
};

#pragma once
// The one stream that carries a report. Bytes collect in a buffer of the
// stream's own; every LF written leaves as CR LF, so a report is the same
// bytes on every platform. A line end on the console is a real flush (one
// write per line); a results file is written only in whole blocks.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace uni {

class output_stream {
public:
    explicit output_stream(std::size_t buffer_size);
    virtual ~output_stream() = default;
    output_stream(const output_stream&) = delete;
    output_stream& operator=(const output_stream&) = delete;

    void write(std::string_view text);
    void write(const char* bytes, std::size_t count) { write(std::string_view(bytes, count)); }
    void put(char c);
    // `count` copies of `c` (padding of a cell).
    void fill(char c, std::size_t count);
    // A line feed, then the stream's flush.
    void end_line();
    // Hands every buffered byte on now. False once the stream has failed.
    bool flush_buffer();
    // A write failed: from then on the stream takes nothing more.
    bool failed() const { return failed_; }

protected:
    // What a flush at a line end does: the console writes, a results file waits.
    virtual void sync() { flush_buffer(); }
    // Hands bytes to the destination. False on failure.
    virtual bool write_bytes(const char* bytes, std::size_t count) = 0;

private:
    // A full buffer is handed on at once, so a block leaves with its last byte.
    void put_raw(char c) {
        if (failed_) return;
        buffer_[used_++] = c;
        if (used_ == capacity_) flush_buffer();
    }

    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_;
    std::size_t used_ = 0;
    bool failed_ = false;
};

// The standard output.
class console_output final : public output_stream {
public:
    console_output();
    ~console_output() override;

protected:
    bool write_bytes(const char* bytes, std::size_t count) override;
};

// Accepts everything and drops it.
class null_out_stream final : public output_stream {
public:
    null_out_stream() : output_stream(256) {}

protected:
    void sync() override {}
    bool write_bytes(const char*, std::size_t) override { return true; }
};

}  // namespace uni

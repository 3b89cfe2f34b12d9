#pragma once
// The one stream that carries a report. Bytes collect in a buffer of the
// stream's own; every LF written leaves as CR LF, so a report is the same
// bytes on every platform. A line end on the console is a real flush (one
// write per line); a results file is written only in whole blocks.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace uni {

class output_stream {
public:
    explicit output_stream(std::size_t buffer_size);
    virtual ~output_stream() = default;
    output_stream(const output_stream&) = delete;
    output_stream& operator=(const output_stream&) = delete;

    // The short pieces of a row take the inline paths: room in the buffer
    // and no LF to translate.
    void write(std::string_view text) {
        if (fits(text.size()) && (text.empty() || std::memchr(text.data(), '\n', text.size()) == nullptr)) {
            copy_in(text.data(), text.size());
            return;
        }
        write_lines(text);
    }
    // Text known to hold no LF (digits, fixed words): no scan.
    void write_plain(std::string_view text) {
        if (fits(text.size())) {
            copy_in(text.data(), text.size());
            return;
        }
        write_lines(text);
    }
    void put(char c) {
        if (c != '\n' && fits(1)) {
            buffer_[used_++] = c;
            return;
        }
        put_slow(c);
    }
    // `count` copies of `c` (padding of a cell).
    void fill(char c, std::size_t count) {
        if (c != '\n' && fits(count)) {
            std::memset(buffer_.get() + used_, c, count);
            used_ += count;
            return;
        }
        fill_slow(c, count);
    }
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
    // The one test of the inline paths: room for `count` bytes with one to
    // spare. A piece taken there never fills the buffer to its last byte, so
    // the general paths see every full buffer and hand it on with its last
    // byte, and blocks leave exactly as they would byte by byte.
    bool fits(std::size_t count) const { return count < capacity_ - used_ && !failed_; }
    void copy_in(const char* bytes, std::size_t count) {
        if (count != 0) std::memcpy(buffer_.get() + used_, bytes, count);
        used_ += count;
    }
    // The general paths: line ends translated, the buffer handed on when full.
    void write_lines(std::string_view text);
    void put_slow(char c);
    void fill_slow(char c, std::size_t count);

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

}  // namespace uni

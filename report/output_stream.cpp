#include "report/output_stream.h"

#include <cstring>

#include "platform/os.h"

namespace uni {

output_stream::output_stream(std::size_t buffer_size)
    : buffer_(new char[buffer_size < 2 ? 2 : buffer_size]), capacity_(buffer_size < 2 ? 2 : buffer_size) {}

void output_stream::write_lines(std::string_view text) {
    while (!text.empty() && !failed_) {
        // Copy the run up to the next LF in one piece; the LF becomes CR LF.
        std::size_t lf = text.find('\n');
        std::size_t run = lf == std::string_view::npos ? text.size() : lf;
        const char* p = text.data();
        std::size_t left = run;
        while (left > 0 && !failed_) {
            std::size_t take = capacity_ - used_ < left ? capacity_ - used_ : left;
            std::memcpy(buffer_.get() + used_, p, take);
            used_ += take;
            p += take;
            left -= take;
            if (used_ == capacity_) flush_buffer();
        }
        if (lf == std::string_view::npos) break;
        put_raw('\r');
        put_raw('\n');
        text.remove_prefix(run + 1);
    }
}

void output_stream::put_slow(char c) {
    if (c == '\n') put_raw('\r');
    put_raw(c);
}

void output_stream::fill_slow(char c, std::size_t count) {
    if (c == '\n') {
        while (count-- > 0) put_slow(c);
        return;
    }
    while (count > 0 && !failed_) {
        std::size_t take = capacity_ - used_ < count ? capacity_ - used_ : count;
        std::memset(buffer_.get() + used_, c, take);
        used_ += take;
        count -= take;
        if (used_ == capacity_) flush_buffer();
    }
}

void output_stream::end_line() {
    put('\n');
    sync();
}

bool output_stream::flush_buffer() {
    if (failed_) return false;
    if (used_ > 0) {
        if (!write_bytes(buffer_.get(), used_)) {
            failed_ = true;
            return false;
        }
        used_ = 0;
    }
    return true;
}

console_output::console_output() : output_stream(65536) {}

console_output::~console_output() { flush_buffer(); }

bool console_output::write_bytes(const char* bytes, std::size_t count) {
    return os::write_stdout(bytes, count);
}

}  // namespace uni

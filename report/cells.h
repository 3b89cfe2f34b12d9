#pragma once
// Pieces of a report cell shared by the text and XML writers. A row is put
// together in a row_text and handed to the stream in one piece; the writers
// below take either sink. Nothing here allocates once the row has grown to
// the longest row of the run.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/digits.h"
#include "report/output_stream.h"

namespace cells {

// Copies a short piece in whole words: a row is made of many pieces of a
// few bytes, where a call to memcpy would cost more than the copy. Reads
// stay inside [from, from + count); the words may overlap.
inline void copy_bytes(char* to, const char* from, std::size_t count) {
    if (count > 16) {
        std::memcpy(to, from, count);
    } else if (count >= 8) {
        std::memcpy(to, from, 8);
        std::memcpy(to + count - 8, from + count - 8, 8);
    } else if (count >= 4) {
        std::memcpy(to, from, 4);
        std::memcpy(to + count - 4, from + count - 4, 4);
    } else if (count >= 2) {
        std::memcpy(to, from, 2);
        std::memcpy(to + count - 2, from + count - 2, 2);
    } else if (count == 1) {
        *to = *from;
    }
}

// One report row in memory. It takes text as it is: the stream that gets
// the whole row applies its LF rule then, to every byte alike.
class row_text {
public:
    row_text() : data_(new char[initial_capacity]), capacity_(initial_capacity) {}

    void clear() { used_ = 0; }
    std::string_view view() const { return {data_.get(), used_}; }

    void write(std::string_view text) {
        copy_bytes(room(text.size()), text.data(), text.size());
        used_ += text.size();
    }
    void write_plain(std::string_view text) { write(text); }
    void put(char c) {
        *room(1) = c;
        ++used_;
    }
    // Padding is set in whole words of the slack's size; the row moves on by count.
    void fill(char c, std::size_t count) {
        char* at = room(count);
        for (std::size_t done = 0; done < count; done += slack) std::memset(at + done, c, slack);
        used_ += count;
    }

private:
    static constexpr std::size_t initial_capacity = 512;
    // Room kept behind every piece for the whole-word padding.
    static constexpr std::size_t slack = 16;

    char* room(std::size_t count) {
        if (capacity_ - used_ < count + slack) grow(count + slack);
        return data_.get() + used_;
    }
    void grow(std::size_t count);

    std::unique_ptr<char[]> data_;
    std::size_t capacity_;
    std::size_t used_ = 0;
};

// Unsigned number in base 10 or 16 (lower case), right-aligned in `width`
// with `pad`. Never cut.
template <class Sink>
void write_number(Sink& out, std::uint64_t value, int base = 10, std::size_t width = 0, char pad = ' ') {
    char text[24];
    char* const end = text + sizeof text;
    const char* first = digits::put_backwards(end, value, base == 16 ? 16u : 10u);
    const auto size = static_cast<std::size_t>(end - first);
    if (size < width) out.fill(pad, width - size);
    out.write_plain(std::string_view(first, size));
}

// Text padded with blanks on the right, or on the left, to `width`.
template <class Sink>
void write_left(Sink& out, std::string_view text, std::size_t width) {
    out.write(text);
    if (text.size() < width) out.fill(' ', width - text.size());
}
template <class Sink>
void write_right(Sink& out, std::string_view text, std::size_t width) {
    if (text.size() < width) out.fill(' ', width - text.size());
    out.write(text);
}

// Each byte as two lower-case hex digits, joined by one blank.
template <class Sink>
void write_hex_bytes(Sink& out, std::span<const std::uint8_t> bytes) {
    // In chunks through a stack buffer: one sink call per 64 bytes.
    char chunk[64 * 3];
    std::size_t used = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i != 0) chunk[used++] = ' ';
        chunk[used++] = digits::hex_pairs[2 * bytes[i]];
        chunk[used++] = digits::hex_pairs[2 * bytes[i] + 1];
        if (used > sizeof chunk - 3) {
            out.write_plain(std::string_view(chunk, used));
            used = 0;
        }
    }
    out.write_plain(std::string_view(chunk, used));
}

// Four bytes in decimal joined by ".".
template <class Sink>
void write_ipv4(Sink& out, std::span<const std::uint8_t, 4> bytes) {
    // At most 15 characters, written in one piece (the buffer is larger
    // only so that no compiler takes the copy for an overrun).
    char text[32];
    char* p = text;
    for (std::size_t i = 0; i < 4; ++i) {
        if (i != 0) *p++ = '.';
        const unsigned byte = bytes[i];
        if (byte >= 100) *p++ = static_cast<char>('0' + byte / 100);
        if (byte >= 10) *p++ = static_cast<char>('0' + byte / 10 % 10);
        *p++ = static_cast<char>('0' + byte % 10);
    }
    out.write_plain(std::string_view(text, static_cast<std::size_t>(p - text)));
}

}  // namespace cells

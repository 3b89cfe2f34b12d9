#pragma once
// The one bounds-checked reader of wire bytes, used by every decoder. Bytes
// behind the end of the message read as 0, exactly as in the zero-filled
// receive buffer, and the overrun is remembered, so a record's fixed fields
// are read first and the fault checked once. Fields are assembled from
// bytes, never through casts.

#include <cstddef>
#include <cstdint>
#include <span>

class wire_reader {
public:
    explicit wire_reader(std::span<const std::uint8_t> message) : message_(message) {}

    // Cursor reads: each moves on by its size.
    std::uint8_t u8() { return static_cast<std::uint8_t>(take(1)); }
    std::uint16_t u16() { return static_cast<std::uint16_t>(take(2)); }
    std::uint32_t u32() { return take(4); }
    void skip(std::size_t count) { move_to(pos_ + count); }
    void seek(std::size_t pos) { move_to(pos); }

    std::size_t pos() const { return pos_; }
    // Bytes left in front of the cursor: a read of up to this many stays inside.
    std::size_t remaining() const { return pos_ < message_.size() ? message_.size() - pos_ : 0; }
    std::span<const std::uint8_t> message() const { return message_; }
    // True once any read or move has gone behind the end.
    bool overrun() const { return overrun_; }
    std::size_t length() const { return message_.size(); }

private:
    std::uint32_t take(std::size_t count) {
        std::uint32_t value = 0;
        if (pos_ + count <= message_.size()) {  // the usual case: one test for the field
            for (std::size_t i = 0; i < count; ++i) value = (value << 8) | message_[pos_ + i];
        } else {
            for (std::size_t i = 0; i < count; ++i) {
                const std::size_t at = pos_ + i;
                value = (value << 8) | (at < message_.size() ? message_[at] : 0u);
            }
        }
        move_to(pos_ + count);
        return value;
    }
    void move_to(std::size_t pos) {
        pos_ = pos;
        overrun_ |= pos_ > message_.size();
    }

    std::span<const std::uint8_t> message_;
    std::size_t pos_ = 0;
    bool overrun_ = false;
};

#pragma once
// The one bounds-checked reader of wire bytes. Bytes behind the end of the
// message read as 0, exactly as in the zero-filled receive buffer, and the
// overrun is remembered so a record's fixed fields can be read first and the
// fault checked once. Fields are assembled from bytes, never through casts.

#include <cstddef>
#include <cstdint>

class wire_reader {
public:
    wire_reader(const std::uint8_t* data, std::size_t length) : data_(data), length_(length) {}

    std::uint8_t byte_at(std::size_t pos) const { return pos < length_ ? data_[pos] : 0; }
    std::uint16_t u16_at(std::size_t pos) const {
        return static_cast<std::uint16_t>((byte_at(pos) << 8) | byte_at(pos + 1));
    }
    std::uint32_t u32_at(std::size_t pos) const {
        return (std::uint32_t{u16_at(pos)} << 16) | u16_at(pos + 2);
    }

    // Cursor reads: advance and remember an overrun.
    std::uint8_t u8() { return static_cast<std::uint8_t>(take(1)); }
    std::uint16_t u16() { return static_cast<std::uint16_t>(take(2)); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(take(4)); }

    std::size_t pos() const { return pos_; }
    void seek(std::size_t pos) { pos_ = pos; }
    void skip(std::size_t count) { pos_ += count; overrun_ |= pos_ > length_; }
    bool overrun() const { return overrun_; }
    std::size_t length() const { return length_; }
    const std::uint8_t* data() const { return data_; }

private:
    std::uint32_t take(std::size_t count) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < count; ++i) value = (value << 8) | byte_at(pos_ + i);
        pos_ += count;
        overrun_ |= pos_ > length_;
        return value;
    }

    const std::uint8_t* data_;
    std::size_t length_;
    std::size_t pos_ = 0;
    bool overrun_ = false;
};

#pragma once
// Digits of numbers as the report writes them: decimal, or lower-case hex.
// Rows are made of many short numbers, so the digits go straight into the
// caller's buffer.

#include <array>
#include <cstddef>
#include <cstdint>

namespace digits {

inline constexpr char hex[] = "0123456789abcdef";

// The two hex digits of every byte value, looked up instead of worked out.
inline constexpr std::array<char, 512> hex_pairs = [] {
    std::array<char, 512> pairs{};
    for (std::size_t value = 0; value < 256; ++value) {
        pairs[2 * value] = hex[value >> 4];
        pairs[2 * value + 1] = hex[value & 0xf];
    }
    return pairs;
}();

// The digits of value in base 10 or 16, written backwards so that the last
// one stands just before `end`; the first digit's place. 20 places are
// always enough.
inline char* put_backwards(char* end, std::uint64_t value, unsigned base = 10) {
    if (base == 16) {
        do {
            *--end = hex[value & 0xf];
            value >>= 4;
        } while (value != 0);
    } else {
        do {
            *--end = static_cast<char>('0' + value % 10);
            value /= 10;
        } while (value != 0);
    }
    return end;
}

}  // namespace digits

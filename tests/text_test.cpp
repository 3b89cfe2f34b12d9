#include "platform/text.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace {

// The C readers' rules under every number reader: white space, one sign, a "0x" for base 16, base 0 finding
// its base, digits as far as they go; too large a value reads as all ones of the width, whatever the sign.
TEST(Text, NumberReadersFollowTheCRules) {
    // Reader (10/16/8/0: read_unsigned in that base, 64 and 32 bits; -1: parse_number; -2: parse_number_c, with
    // character constants and without trimming), text, accepted (parse only), 64-bit value, 32-bit value.
    // clang-format off
    const std::tuple<int, const char*, bool, std::uint64_t, std::uint32_t> rows[] = {
        {-1, "abc", false, 777, 777}, {-1, " 5 ", true, 5, 5}, {-1, "12ab", true, 12, 12}, {-1, "o17", true, 0, 15},
        {-1, "-1", true, 0, 0xffffffff}, {-1, "0XfF", true, 0, 255}, {-1, "10x", true, 0, 0} /* x or o anywhere */,
        {-1, "x123456789", true, 0, 0xffffffff}, {-1, "-99999999999", true, 0, 0x80000000}, {-2, " 5", false, 0, 0},
        {-2, "'a'", true, 0, 97}, {-2, "'ab'", false, 0, 0}, {-2, "99999999999", true, 0, 0xffffffff},
        {-2, " 0x10", true, 0, 0} /* digits from the untrimmed text, here "x10" */,
        {16, "0x1F", true, 31, 31}, {16, "4\x11", true, 4, 4} /* a control character is no digit */,
        {0, "0x10", true, 16, 16}, {0, "017", true, 15, 15}, {8, "\v 17z", true, 15, 15},
        {10, "-1", true, UINT64_MAX, 0xffffffff}, {10, "4294967296", true, 4294967296, 0xffffffff},
        {10, "-4294967296", true, 0xffffffff00000000, 0xffffffff}, {10, "+", true, 0, 0}, {16, "0x", true, 0, 0},
        {16, "1ffffffffffffffff", true, UINT64_MAX, 0xffffffff},
    };
    // clang-format on
    for (const auto& [reader, text, ok, wide, narrow] : rows) {
        if (reader < 0) {
            std::uint32_t value = 777;
            EXPECT_EQ(reader == -2 ? parse_number_c(text, value) : parse_number(text, value), ok) << text;
            EXPECT_EQ(value, narrow) << text;
            continue;
        }
        EXPECT_EQ(read_unsigned<std::uint64_t>(text, reader), wide) << text;
        EXPECT_EQ(read_unsigned<std::uint32_t>(text, reader), narrow) << text;
    }
    // Where the digits end: the kernel release is read number by number.
    const std::pair<const char*, std::size_t> ends[] = {{"6.1.0-18", 1}, {".", 0}, {" 42x", 3}, {"abc", 0}};
    for (const auto& [text, end] : ends) EXPECT_EQ(scan_number(text, 10, UINT32_MAX).end, end) << text;
    const std::pair<const char*, double> decimals[] = {{" -1.5", -1.5}, {"\n2", 2},  {"+-1", 0},     {"- 5", 0},
                                                       {"x", 0},        {"3e1", 30}, {"12.5:", 12.5}};
    for (const auto& [text, value] : decimals) EXPECT_EQ(read_decimal(text), value) << text;
}

}  // namespace

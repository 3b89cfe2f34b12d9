#include "platform/text.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

namespace {

TEST(Text, ParseNumbers) {
    // Parser (C: with character constants, without trimming), text, accepted, value.
    const std::tuple<bool, const char*, bool, std::uint32_t> rows[] = {
        {false, "abc", false, 777},
        {false, " 5 ", true, 5},
        {false, "12ab", true, 12},
        {false, "-1", true, 0xffffffff},
        {false, "0XfF", true, 255},
        {false, "o17", true, 15},
        {false, "10x", true, 0},  // the x or o anywhere decides
        {false, "x123456789", true, 0xffffffff},
        {false, "-99999999999", true, 0x80000000},
        {true, " 5", false, 0},
        {true, "'a'", true, 97},
        {true, "'ab'", false, 0},
        {true, "99999999999", true, 0xffffffff},
        {true, " 0x10", true, 0},  // digits are read from the untrimmed text, here "x10"
    };
    for (const auto& [c, text, ok, expected] : rows) {
        std::uint32_t value = 777;
        EXPECT_EQ(c ? parse_number_c(text, value) : parse_number(text, value), ok) << text;
        EXPECT_EQ(value, expected) << text;
    }
}

// The C readers' rules under every number reader: white space, one sign, a "0x" for base 16, base 0 finding
// its base, digits as far as they go; too large a value reads as all ones of the width, whatever the sign.
TEST(Text, ReadUnsigned) {
    const std::tuple<int, const char*, std::uint64_t, std::uint32_t> rows[] = {
        // base, text, 64 bits, 32 bits
        {16, "0x1F", 31, 31},
        {16, "4\x11", 4, 4} /* a control character is no digit */,
        {0, "0x10", 16, 16},
        {0, "017", 15, 15},
        {0, "19", 19, 19},
        {8, "\v 17z", 15, 15},
        {10, "-1", UINT64_MAX, 0xffffffff},
        {10, "4294967296", 4294967296, 0xffffffff},
        {10, "-4294967296", 0xffffffff00000000, 0xffffffff},
        {16, "1ffffffffffffffff", UINT64_MAX, 0xffffffff},
        {10, "+", 0, 0},
        {16, "0x", 0, 0},
    };
    for (const auto& [base, text, wide, narrow] : rows) {
        EXPECT_EQ(read_unsigned<std::uint64_t>(text, base), wide) << text;
        EXPECT_EQ(read_unsigned<std::uint32_t>(text, base), narrow) << text;
    }
    // Where the digits end: the kernel release is read number by number.
    const std::pair<const char*, std::size_t> ends[] = {{"6.1.0-18", 1}, {".", 0}, {" 42x", 3}, {"abc", 0}};
    for (const auto& [text, end] : ends) EXPECT_EQ(scan_number(text, 10, UINT32_MAX).end, end) << text;
    const std::pair<const char*, double> decimals[] = {{" -1.5", -1.5}, {"\n2", 2},  {"+-1", 0},     {"- 5", 0},
                                                       {"x", 0},        {"3e1", 30}, {"12.5:", 12.5}};
    for (const auto& [text, value] : decimals) EXPECT_EQ(read_decimal(text), value) << text;
}

TEST(Text, SameTextAndSplit) {
    const std::tuple<const char*, const char*, bool> bytes[] = {
        {"-XML", "-xml", true}, {"-xm", "-xml", false}, {"@", "`", false}, {"\xc3\x89", "\xc3\xa9", false}};
    for (const auto& [a, b, same] : bytes) EXPECT_EQ(same_text(a, b), same) << a;
    EXPECT_TRUE(same_text(u"GLOBAL", u"global"));
    EXPECT_FALSE(same_text(u"\u00c9", u"\u00e9"));

    std::vector<std::string> list{"kept"};
    EXPECT_TRUE(split_text(" a ||b\t", '|', list, true, true));
    EXPECT_EQ(list, (std::vector<std::string>{"kept", "a", "b"}));
    EXPECT_FALSE(split_text("", '|', list, false, false));
    EXPECT_TRUE(list.empty());
    // The wide form trims by the wide rule and always starts afresh.
    std::vector<std::u16string> wide{u"gone"};
    EXPECT_TRUE(split_text(u" a |\t b\t|", u'|', wide, true));
    EXPECT_EQ(wide, (std::vector<std::u16string>{u"a", u" b"}));
}

TEST(Text, TrimAndLower) {
    std::string bytes = " \t\r\na b\n ", blank = " \t\r\n";
    EXPECT_TRUE(trim_text(bytes));
    EXPECT_EQ(bytes, "a b");
    EXPECT_FALSE(trim_text(blank));
    // Wide text goes kind by kind: a blank behind a leading tab stays, a CR in front of the last LF too.
    // Path text keeps that rule in bytes.
    const std::pair<std::u16string, std::u16string> wide[] = {
        {u" \t x \r\n", u" x \r"},
        {u"x\r\n\r", u"x\r"},
        {u" \t ", u""},
    };
    for (auto [text, trimmed] : wide) {
        EXPECT_EQ(trim_text(text), !trimmed.empty());
        EXPECT_EQ(text, trimmed);
    }
    std::string path = " \t x \r\n";
    EXPECT_TRUE(trim_each_kind(path));
    EXPECT_EQ(path, " x \r");
    std::string mixed = "AZaz@[\xc3\x89";
    std::u16string wide_mixed = u"AZ@[\u00c9";
    to_lower(mixed), to_lower(wide_mixed);
    EXPECT_EQ(mixed, "azaz@[\xc3\x89");
    EXPECT_EQ(wide_mixed, u"az@[\u00c9");
}

}  // namespace

#include "platform/text.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

namespace {

// The C readers' rules under every number reader: white space, one sign, a "0x" for base 16, base 0 finding
// its base, digits as far as they go; too large a value reads as all ones of the width, whatever the sign.
TEST(Text, ReadNumbers) {
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

TEST(Text, CaseBlindCompareSplitTrimAndLowerCase) {
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

    std::string text = " \t\r\na b\n ", blank = " \t\r\n", path = " \t x \r\n";
    EXPECT_TRUE(trim_text(text));
    EXPECT_EQ(text, "a b");
    EXPECT_FALSE(trim_text(blank));
    // Wide text goes kind by kind: a blank behind a leading tab stays, a CR in front of the last LF too.
    // Path text keeps that rule in bytes.
    const std::pair<std::u16string, std::u16string> wide_trims[] = {
        {u" \t x \r\n", u" x \r"}, {u"x\r\n\r", u"x\r"}, {u" \t ", u""}};
    for (auto [line, trimmed] : wide_trims) {
        EXPECT_EQ(trim_text(line), !trimmed.empty());
        EXPECT_EQ(line, trimmed);
    }
    EXPECT_TRUE(trim_each_kind(path));
    EXPECT_EQ(path, " x \r");
    std::string mixed = "AZaz@[\xc3\x89";
    std::u16string wide_mixed = u"AZ@[\u00c9";
    to_lower(mixed), to_lower(wide_mixed);
    EXPECT_EQ(mixed, "azaz@[\xc3\x89");
    EXPECT_EQ(wide_mixed, u"az@[\u00c9");
}

}  // namespace

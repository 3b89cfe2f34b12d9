#include "platform/text.h"

#include <gtest/gtest.h>
#include <tuple>

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

TEST(Text, TrimAndLower) {
    std::string bytes = " \t\r\na b\n ", blank = " \t\r\n";
    EXPECT_TRUE(trim_text(bytes));
    EXPECT_EQ(bytes, "a b");
    EXPECT_FALSE(trim_text(blank));
    // Wide text goes kind by kind: a blank behind a leading tab stays, a CR in front of the last LF too.
    const std::pair<std::u16string, std::u16string> wide[] = {
        {u" \t x \r\n", u" x \r"},
        {u"x\r\n\r", u"x\r"},
        {u" \t ", u""},
    };
    for (auto [text, trimmed] : wide) {
        EXPECT_EQ(trim_text(text), !trimmed.empty());
        EXPECT_EQ(text, trimmed);
    }
    std::string mixed = "AZaz@[\xc3\x89";
    std::u16string wide_mixed = u"AZ@[\u00c9";
    to_lower(mixed), to_lower(wide_mixed);
    EXPECT_EQ(mixed, "azaz@[\xc3\x89");
    EXPECT_EQ(wide_mixed, u"az@[\u00c9");
}

}  // namespace

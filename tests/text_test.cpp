#include "platform/text.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

using number_row = std::tuple<const char*, bool, std::uint32_t>;  // text, accepted, value

TEST(Text, ParseNumber) {
    const number_row rows[] = {
        {"", false, 777}, {"abc", false, 777}, {" 5 ", true, 5}, {"12abc", true, 12}, {"+7", true, 7},
        {"-1", true, 0xffffffff}, {"0x10", true, 16}, {"0XfF", true, 255}, {"o17", true, 15},
        {"box", true, 0}, {"foo", true, 0}, {"10x", true, 0},  // the x or o anywhere decides
        {"x123456789", true, 0xffffffff}, {"99999999999", true, 0x7fffffff}, {"-99999999999", true, 0x80000000},
    };
    for (const auto& [text, ok, expected] : rows) {
        std::uint32_t value = 777;
        EXPECT_EQ(parse_number(text, value), ok) << text;
        EXPECT_EQ(value, expected) << text;
    }
}

TEST(Text, ParseNumberC) {
    const number_row rows[] = {
        {"", false, 0}, {"abc", false, 0}, {" 5", false, 0}, {"'a'", true, 97}, {"'ab'", false, 0},
        {"-1", true, 0xffffffff}, {"99999999999", true, 0xffffffff}, {"x1F", true, 31}, {"o17", true, 15},
        {" 0x10", true, 0},  // digits are read from the untrimmed text, here "x10"
    };
    for (const auto& [text, ok, expected] : rows) {
        std::uint32_t value = 777;
        EXPECT_EQ(parse_number_c(text, value), ok) << text;
        EXPECT_EQ(value, expected) << text;
    }
}

TEST(Text, TrimAndLower) {
    std::string bytes = " \t\r\na b\n ";
    EXPECT_TRUE(trim_text(bytes));
    EXPECT_EQ(bytes, "a b");
    bytes = " \t\r\n";
    EXPECT_FALSE(trim_text(bytes));
    // Wide text goes kind by kind: a blank behind a leading tab stays, and
    // CRs go before LFs, so a CR in front of the last LF stays.
    const std::pair<std::u16string, std::u16string> wide[] = {
        {u" \t x \r\n", u" x \r"}, {u"x\r\n\r", u"x\r"}, {u" \t ", u""}};
    for (auto [text, trimmed] : wide) {
        EXPECT_EQ(trim_text(text), !trimmed.empty());
        EXPECT_EQ(text, trimmed);
    }
    std::string mixed = "AZaz@[\xc3\x89";
    to_lower(mixed);
    EXPECT_EQ(mixed, "azaz@[\xc3\x89");
    std::u16string wide_mixed = u"AZ@[\u00c9";
    to_lower(wide_mixed);
    EXPECT_EQ(wide_mixed, u"az@[\u00c9");
}

}  // namespace

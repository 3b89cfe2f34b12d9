// UTF-8 and UTF-16 text, both ways.
#include "platform/text_convert.h"

#include <gtest/gtest.h>

namespace {

TEST(TextConvert, BothWays) {
    const std::pair<std::string, std::u16string> to_wide_cases[] = {
        // empty: refused
        {"\xC3\xA9\xED\x9F\xBE\xEE\x80\x81\xF4\x8F\xBF\xBF", u"\u00E9\uD7FE\uE001\U0010FFFF"},
        {"\xED\x9F\xBF", u""},  // U+D7FF and U+E000: the refused band is one wider each side
        {"\xEE\x80\x80", u""},
        {"\xF4\x90\x80\x80", u""},  // above U+10FFFF
        {"\xC0\xAF", u"/"},         // overlong
        {"a\xE2\x82", u""},         // cut short
    };
    for (const auto& [utf8, wide] : to_wide_cases) EXPECT_EQ(to_wide(utf8), wide) << utf8;
    const std::pair<std::u16string, std::string> to_utf8_cases[] = {
        // a lone high surrogate ends; a low one stays
        {u"\u00E9\u20AC\U0010FFFF", "\xC3\xA9\xE2\x82\xAC\xF4\x8F\xBF\xBF"},
        {u"ab\xDBFF"
         u"c",
         "ab"},
        {u"a\xDC00"
         u"b",
         "a\xED\xB0\x80"
         "b"},
    };
    for (const auto& [wide, utf8] : to_utf8_cases) EXPECT_EQ(to_utf8(wide), utf8);
}

}  // namespace

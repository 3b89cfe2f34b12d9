// UTF-8 and UTF-16 text, both ways.
#include "platform/text_convert.h"

#include <gtest/gtest.h>

namespace {

TEST(TextConvert, RefusedUtf8AndLoneSurrogates) {
    // Refused input converts to nothing: the surrogate band refused is one wider each side (U+D7FF, U+E000), above
    // U+10FFFF, or cut short; an overlong form is taken.
    EXPECT_EQ(to_wide("\xC3\xA9\xED\x9F\xBE\xEE\x80\x81\xF4\x8F\xBF\xBF"), u"\u00E9\uD7FE\uE001\U0010FFFF");
    EXPECT_EQ(to_wide("\xC0\xAF"), u"/");
    for (const char* refused : {"\xED\x9F\xBF", "\xEE\x80\x80", "\xF4\x90\x80\x80", "a\xE2\x82"})
        EXPECT_EQ(to_wide(refused), u"") << refused;
    // A lone high surrogate ends the text; a lone low one is written as it is.
    const std::pair<std::u16string, std::string> to_utf8_cases[] = {
        {u"\u00E9\u20AC\U0010FFFF", "\xC3\xA9\xE2\x82\xAC\xF4\x8F\xBF\xBF"},
        {{u'a', u'b', 0xDBFF, u'c'}, "ab"},
        {{u'a', 0xDC00, u'b'}, "a\xED\xB0\x80\x62"}};
    for (const auto& [wide, utf8] : to_utf8_cases) EXPECT_EQ(to_utf8(wide), utf8);
}

}  // namespace

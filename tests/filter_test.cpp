#include "input/filter.h"

#include <tuple>

#include "platform/fileio.h"
#include "platform/text_convert.h"
#include "support/fixtures.h"

namespace {

filter_settings filters_of(const char* value, bool signatures = false) {
    filter_settings filter;
    if (value) signatures ? parse_filter_sig(value, filter.entries) : (void)parse_filter(value, filter.entries);
    return filter;
}

TEST(Filter, PatternsMatchCaseBlind) {
    // Filter, text, passes. "*.x" tries the first ending only, an inner star is dropped, "**" is the empty name,
    // "," wins over "|", "/" is "\\", a path pattern also tries the name, a line not made wide matches nothing.
    // clang-format off
    const std::tuple<const char*, const char16_t*, bool> cases[] = {
        {"*eXample*", u"Node1.Example.net", true}, {"*.example", u"a.example.example", false}, {"ab*cd", u"abcd", true},
        {"node*", u"xnode.a.example", false}, {"a:b", u"a", true}, {" a ", u"a", false},
        {"x | a.example", u"A.EXAMPLE", true}, {"a|b,c", u"a|b", true}, {"a.example", u"a.example.net", false},
        {nullptr, u"anything", true}, {"", u"a.example", false}, {"**", u"a.example", false},
        {"**", u"dir\\", true}, {"\\dir", u"dir", false}, {"\\a", u"X/A/b", true},
        {"\\a", u"x\\ab\\c", false}, {"\\a", u"x\\a", false}, {"\\b", u"\\b", true},
        {"*", u"", false},
    };
    // clang-format on
    for (const auto& [filter, text, passes] : cases)
        EXPECT_EQ(match_filter(filters_of(filter), text, nullptr), passes) << to_utf8(text);
}

TEST(Filter, SignatureBytesAtAnOffset) {
    // Each piece is cut to 8 bits, past 32 bits it reads all ones; an offset comes only with two tokens, in hex,
    // octal or decimal up to its longest form; anything else reads 0.
    // clang-format off
    const std::tuple<const char*, std::vector<std::uint8_t>, std::uint64_t> cases[] = {
        {"4d5a", {0x5a}, 0}, {"4d 5a|0x10", {0x4d, 0x5a}, 16}, {"4d, 2", {0x4d}, 2}, {"4d|1|2", {0x4d}, 0},
        {"zz 0x7f", {0x00, 0x7f}, 0}, {"123456789", {0xff}, 0}, {"|", {}, 0}, {"4d|o17", {0x4d}, 15},
        {"4d|12ab", {0x4d}, 12}, {"4d|0xffffffffffffffff", {0x4d}, UINT64_MAX}, {"4d|0x1ffffffffffffffff", {0x4d}, 0},
    };
    // clang-format on
    for (const auto& [value, bytes, offset] : cases) {
        const std::vector<filter_entry> entries = filters_of(value, true).entries;
        ASSERT_EQ(entries.size(), bytes.empty() ? 0u : 1u) << value;
        if (entries.empty()) continue;
        EXPECT_EQ(entries[0].signature, bytes) << value;
        EXPECT_EQ(entries[0].signature_offset, offset) << value;
    }
    test_support::temp_dir dir;
    const std::u16string path = to_wide(dir.put("sample.bin", "hello world"));  // the last byte is at 10
    const std::pair<const char*, bool> in_file[] = {
        {"68 65", true}, {"77 6f|7", false}, {"64|10", true}, {"64 00|10", false}, {"68|0xffffffffffffffff", false},
    };
    for (const auto& [value, passes] : in_file)
        EXPECT_EQ(match_filter(filters_of(value, true), path, nullptr), passes) << value;
    EXPECT_FALSE(match_filter(filters_of("68", true), path + u".missing", nullptr));
}

TEST(Filter, FileTimesWithinTheBounds) {
    test_support::temp_dir dir;
    const std::u16string path = to_wide(dir.put("sample.bin", "x"));
    file_info real, none;
    ASSERT_TRUE(get_file_info(real, to_utf8(path)));
    const std::uint64_t hour = 36000000000ULL, t = real.write_time;
    // Start bound, stop bound (0: none), passes.
    const std::tuple<std::uint64_t, std::uint64_t, bool> cases[] = {
        {t - hour, 0, true}, {t + hour, 0, false}, {0, t + hour, true}, {0, t - hour, false}};
    for (const auto& [start, stop, passes] : cases) {
        filter_settings filter;
        filter.start = {start != 0, start, 0};
        filter.stop = {stop != 0, stop, 0};
        file_info facts;  // filled for the caller
        EXPECT_EQ(match_filter(filter, path, &facts), passes) << start << " " << stop;
        EXPECT_EQ(facts.write_time, t) << start << " " << stop;
    }
    filter_settings late;
    late.start = {true, t + hour, 0};
    EXPECT_TRUE(match_filter(late, path, nullptr)) << "without the facts, no time test";
    EXPECT_FALSE(match_filter(late, u"a.example", &none)) << "a host name has no file";
}

}  // namespace

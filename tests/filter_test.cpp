#include "input/filter.h"

#include <tuple>

#include "driver/cmd_params.h"
#include "platform/text_convert.h"
#include "platform/fileio.h"
#include "support/fixtures.h"

namespace {

std::vector<filter_entry> filters_of(const std::vector<const char*>& values, bool signatures = false) {
    std::vector<filter_entry> all, one;
    for (const char* value : values) {
        signatures ? parse_filter_sig(value, one) : (void)parse_filter(value, one);
        all.insert(all.end(), one.begin(), one.end());
    }
    return all;
}

TEST(Filter, Matching) {
    const std::tuple<std::vector<const char*>, const char16_t*, bool> cases[] = {  // filters, text, passes
        {{"*example*"}, u"Node1.Example.net", true}, {{"*.example"}, u"a.example.example", false},  // the first only
        {{"node*"}, u"node.a.example", true}, {{"node*"}, u"xnode.a.example", false}, {{"a**"}, u"ab", true},
        {{"ab*cd"}, u"abcd", true} /* an inner star is dropped */, {{"a:b"}, u"a", true}, {{" a "}, u"a", false},
        {{"x | a.example"}, u"A.EXAMPLE", true}, {{"a|b,c"}, u"a|b", true}, {{"a|b,c"}, u"c", true},  // "," wins
        {{"a.example"}, u"a.example.net", false}, {{}, u"anything", true}, {{"x|*"}, u"anything", true},
        {{""}, u"a.example", false}, {{"**"}, u"a.example", false}, {{"**"}, u"dir\\", true},  // the empty name only
        {{"\\dir"}, u"dir", false}, {{"\\a"}, u"X/A/b", true}, {{"\\a"}, u"x\\ab\\c", false},  // "/" is "\\"
        {{"\\a"}, u"x\\a", false}, {{"\\b"}, u"\\b", true},  // "a" is the name; a path pattern also tries the name
        {{"*"}, u"", false},  // a line that could not be made wide
    };
    for (const auto& [filters, text, passes] : cases)
        EXPECT_EQ(match_filter(cmd_params{}, text, filters_of(filters), nullptr), passes) << to_utf8(text);
}

TEST(Filter, Signatures) {
    // Each piece is cut to 8 bits, past 32 bits it reads all ones; an offset comes only with two tokens, in hex,
    // octal or decimal up to its longest form; anything else reads 0.
    const std::tuple<const char*, std::vector<std::uint8_t>, std::uint64_t> cases[] = {  // value, bytes, offset
        {"4d 5a", {0x4d, 0x5a}, 0}, {"4d5a", {0x5a}, 0}, {"4d 5a|0x10", {0x4d, 0x5a}, 16}, {"4d, 2", {0x4d}, 2},
        {"4d|1|2", {0x4d}, 0}, {"zz 0x7f", {0x00, 0x7f}, 0}, {"123456789", {0xff}, 0}, {"|", {}, 0},
        {"4d|o17", {0x4d}, 15}, {"4d|12ab", {0x4d}, 12}, {"4d|0xffffffffffffffff", {0x4d}, UINT64_MAX},
        {"4d|0x1ffffffffffffffff", {0x4d}, 0},
    };
    for (const auto& [value, bytes, offset] : cases) {
        const std::vector<filter_entry> entries = filters_of({value}, true);
        ASSERT_EQ(entries.size(), bytes.empty() ? 0u : 1u) << value;
        if (!entries.empty()) { EXPECT_TRUE(entries[0].signature == bytes && entries[0].signature_offset == offset); }
    }
    test_support::temp_dir dir;
    const std::u16string path = to_wide(dir.put("sample.bin", "hello world"));
    const std::pair<const char*, bool> in_file[] = {  // the last byte is at 10
        {"68 65", true}, {"77 6f|7", false}, {"64|10", true}, {"64 00|10", false}, {"68|0xffffffffffffffff", false}};
    for (const auto& [value, passes] : in_file)
        EXPECT_EQ(match_filter(cmd_params{}, path, filters_of({value}, true), nullptr), passes) << value;
    EXPECT_FALSE(match_filter(cmd_params{}, path + u".missing", filters_of({"68"}, true), nullptr));
}

TEST(Filter, TimeBounds) {
    test_support::temp_dir dir;
    const std::u16string path = to_wide(dir.put("sample.bin", "x"));
    file_info real, none;
    ASSERT_TRUE(get_file_info(real, to_utf8(path)) && real.write_time > ticks_1601_to_1970 && real.create_time);
    EXPECT_FALSE(get_file_info(none, dir / "missing") || none.write_time);
    const std::uint64_t hour = 36000000000ULL, t = real.write_time;
    const std::tuple<bool, std::uint64_t, bool, std::uint64_t, bool> cases[] = {  // start and stop bound, passes
        {true, t - hour, false, 0, true}, {true, t + hour, false, 0, false}, {false, 0, true, t + hour, true},
        {false, 0, true, t - hour, false}, {true, t - hour, true, UINT64_MAX, true}};
    for (const auto& [start_on, start, stop_on, stop, passes] : cases) {
        cmd_params params;
        params.start_filter = {start_on, start, 0};
        params.stop_filter = {stop_on, stop, 0};
        file_info facts;  // filled for the caller; without them, no time test, and a host name has no file
        EXPECT_TRUE(match_filter(params, path, {}, &facts) == passes && facts.write_time == t);
        EXPECT_TRUE(match_filter(params, path, {}, nullptr) && !match_filter(params, u"a.example", {}, &none));
    }
}

}  // namespace

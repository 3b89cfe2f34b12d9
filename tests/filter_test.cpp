#include "input/filter.h"

#include <tuple>

#include "driver/cmd_params.h"
#include "platform/fileio.h"
#include "platform/text_convert.h"
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
    const std::tuple<std::vector<const char*>, const char16_t*, bool> cases[] = {
        // filters, text, passes
        {{"*example*"}, u"Node1.Example.net", true},
        {{"*.example"}, u"a.example.example", false},  // the first only
        {{"node*"}, u"node.a.example", true},
        {{"node*"}, u"xnode.a.example", false},
        {{"a**"}, u"ab", true},
        {{"ab*cd"}, u"abcd", true},  // an inner star is dropped
        {{"a:b"}, u"a", true},
        {{" a "}, u"a", false},
        {{"x | a.example"}, u"A.EXAMPLE", true},
        {{"a|b,c"}, u"a|b", true},  // "," wins
        {{"a|b,c"}, u"c", true},
        {{"a.example"}, u"a.example.net", false},
        {{}, u"anything", true},
        {{"x|*"}, u"anything", true},
        {{""}, u"a.example", false},
        {{"**"}, u"a.example", false},  // the empty name only
        {{"**"}, u"dir\\", true},
        {{"\\dir"}, u"dir", false},
        {{"\\a"}, u"X/A/b", true},  // "/" is "\\"
        {{"\\a"}, u"x\\ab\\c", false},
        {{"\\a"}, u"x\\a", false},  // "a" is the name
        {{"\\b"}, u"\\b", true},    // a path pattern also tries the name
        {{"*"}, u"", false},        // a line that could not be made wide
    };
    for (const auto& [filters, text, passes] : cases)
        EXPECT_EQ(match_filter(cmd_params{}, text, filters_of(filters), nullptr), passes) << to_utf8(text);
}

TEST(Filter, Signatures) {
    // Each piece is cut to 8 bits, past 32 bits it reads all ones; an offset comes only with two tokens, in hex,
    // octal or decimal up to its longest form; anything else reads 0.
    const std::tuple<const char*, std::vector<std::uint8_t>, std::uint64_t> cases[] = {
        // value, bytes, offset
        {"4d 5a", {0x4d, 0x5a}, 0},
        {"4d5a", {0x5a}, 0},
        {"4d 5a|0x10", {0x4d, 0x5a}, 16},
        {"4d, 2", {0x4d}, 2},
        {"4d|1|2", {0x4d}, 0},
        {"zz 0x7f", {0x00, 0x7f}, 0},
        {"123456789", {0xff}, 0},
        {"|", {}, 0},
        {"4d|o17", {0x4d}, 15},
        {"4d|12ab", {0x4d}, 12},
        {"4d|0xffffffffffffffff", {0x4d}, UINT64_MAX},
        {"4d|0x1ffffffffffffffff", {0x4d}, 0},
    };
    for (const auto& [value, bytes, offset] : cases) {
        const std::vector<filter_entry> entries = filters_of({value}, true);
        ASSERT_EQ(entries.size(), bytes.empty() ? 0u : 1u) << value;
        if (entries.empty()) continue;
        EXPECT_EQ(entries[0].signature, bytes) << value;
        EXPECT_EQ(entries[0].signature_offset, offset) << value;
    }
    test_support::temp_dir dir;
    const std::u16string path = to_wide(dir.put("sample.bin", "hello world"));
    const std::pair<const char*, bool> in_file[] = {
        // the last byte is at 10
        {"68 65", true}, {"77 6f|7", false}, {"64|10", true}, {"64 00|10", false}, {"68|0xffffffffffffffff", false},
    };
    for (const auto& [value, passes] : in_file)
        EXPECT_EQ(match_filter(cmd_params{}, path, filters_of({value}, true), nullptr), passes) << value;
    EXPECT_FALSE(match_filter(cmd_params{}, path + u".missing", filters_of({"68"}, true), nullptr));
}

TEST(Filter, TimeBounds) {
    test_support::temp_dir dir;
    const std::u16string path = to_wide(dir.put("sample.bin", "x"));
    file_info real, none;
    ASSERT_TRUE(get_file_info(real, to_utf8(path)));
    EXPECT_GT(real.write_time, ticks_1601_to_1970);
    EXPECT_NE(real.create_time, 0u);
    EXPECT_FALSE(get_file_info(none, dir / "missing"));
    EXPECT_EQ(none.write_time, 0u);
    const std::uint64_t hour = 36000000000ULL, t = real.write_time;
    // What, start and stop bound, passes.
    const std::tuple<const char*, bool, std::uint64_t, bool, std::uint64_t, bool> cases[] = {
        {"start before", true, t - hour, false, 0, true},         {"start after", true, t + hour, false, 0, false},
        {"stop after", false, 0, true, t + hour, true},           {"stop before", false, 0, true, t - hour, false},
        {"both, around", true, t - hour, true, UINT64_MAX, true},
    };
    for (const auto& [what, start_on, start, stop_on, stop, passes] : cases) {
        cmd_params params;
        params.start_filter = {start_on, start, 0};
        params.stop_filter = {stop_on, stop, 0};
        file_info facts;  // filled for the caller
        EXPECT_EQ(match_filter(params, path, {}, &facts), passes) << what;
        EXPECT_EQ(facts.write_time, t) << what;
        EXPECT_TRUE(match_filter(params, path, {}, nullptr)) << what << ": without the facts, no time test";
        EXPECT_FALSE(match_filter(params, u"a.example", {}, &none)) << what << ": a host name has no file";
    }
}

}  // namespace

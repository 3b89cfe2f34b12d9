// The input filter: the -filter grammar, the name and path tests, the
// signature entries of -filter_sig and the file-time bounds.
#include "input/filter.h"

#include <gtest/gtest.h>

#include <tuple>

#include "driver/cmd_params.h"
#include "input/text_convert.h"
#include "platform/fileio.h"
#include "support/fixtures.h"

namespace {

std::vector<filter_entry> filters_of(const std::vector<const char*>& values) {
    std::vector<filter_entry> all, one;
    for (const char* value : values) {
        parse_filter(value, one);
        all.insert(all.end(), one.begin(), one.end());
    }
    return all;
}

TEST(Filter, Grammar) {
    // Entries as pattern plus flags: F star front, B star back, P path, A all.
    const std::pair<const char*, const char*> cases[] = {
        {"*Example*", "[example]FB "}, {"*.example", "[.example]F "}, {"node*", "[node]B "},
        {"ab*cd", "[abcd] "} /* an inner star is dropped and marks nothing */, {"**", "[]F "}, {"a**", "[a]B "},
        {"\\Dir", "[\\dir]P "}, {"a.example | b.example", "[a.example] [b.example] "},
        {"a|b,c", "[a|b] [c] "} /* "," wins over "|" */, {" a ", "[ a ] "} /* a lone token keeps its blanks */,
        {"", "[] "}, {"|", "[|] "}, {"a.example|*", "[*]A "}, {"a:b", "[a] "}, {"*:x", "[*]A "},
    };
    for (const auto& [value, expected] : cases) {
        std::string text;
        for (const filter_entry& e : filters_of({value}))
            text += "[" + to_utf8(e.pattern) + "]" + (e.star_front ? "F" : "") + (e.star_back ? "B" : "") +
                    (e.is_path ? "P" : "") + (e.match_all ? "A" : "") + " ";
        EXPECT_EQ(text, expected) << value;
    }
}

TEST(Filter, Matching) {
    // Filters, text, passes.
    const std::tuple<std::vector<const char*>, const char16_t*, bool> cases[] = {
        {{"*example*"}, u"Node1.Example.net", true},
        {{"*.example"}, u"a.example.example", false},  // only the first occurrence counts
        {{"node*"}, u"node.a.example", true}, {{"node*"}, u"xnode.a.example", false},
        {{"a.example"}, u"A.EXAMPLE", true}, {{"a.example"}, u"a.example.net", false},
        {{"a.example", "*"}, u"anything", true}, {{""}, u"a.example", false},
        {{"**"}, u"a.example", false}, {{"**"}, u"dir\\", true},  // the only name it passes is the empty one
        {{"\\dir"}, u"dir", false},  // a bare name has the directory "."
        {{"\\a"}, u"x\\a\\b", true}, {{"\\a"}, u"x\\ab\\c", false}, {{"\\a"}, u"X/A/b", true},  // "/" is "\"
        {{"\\a"}, u"x\\a", false},  // "a" is the name here, not a directory
        {{"\\a", "*.txt"}, u"x/b/c.txt", true}, {{"\\b"}, u"\\b", true},  // a path pattern also tries the name
        {{"*.txt"}, u"C:\\logs\\A.TXT", true}, {{}, u"anything", true},
        {{}, u"", false}, {{"*"}, u"", false},  // a line that could not be made wide
    };
    cmd_params params;
    for (const auto& [filters, text, passes] : cases)
        EXPECT_EQ(match_filter(params, text, filters_of(filters), nullptr), passes) << to_utf8(text);
}

TEST(Filter, SignatureValues) {
    // Value, bytes (none: no entry), offset. Each piece is cut to 8 bits, and past 32 bits it reads all
    // ones; an offset comes only with exactly two tokens.
    const std::tuple<const char*, std::vector<std::uint8_t>, std::uint64_t> cases[] = {
        {"4d 5a", {0x4d, 0x5a}, 0}, {"4d5a", {0x5a}, 0}, {"4d 5a|0x10", {0x4d, 0x5a}, 16}, {"4d, 2", {0x4d}, 2},
        {"4d|1|2", {0x4d}, 0}, {"zz 0x7f", {0x00, 0x7f}, 0}, {"123456789", {0xff}, 0}, {"|", {}, 0}, {"", {}, 0},
    };
    for (const auto& [value, bytes, offset] : cases) {
        std::vector<filter_entry> entries;
        parse_filter_sig(value, entries);
        ASSERT_EQ(entries.size(), bytes.empty() ? 0u : 1u) << value;
        if (entries.empty()) continue;
        EXPECT_EQ(entries[0].signature, bytes) << value;
        EXPECT_EQ(entries[0].signature_offset, offset) << value;
        EXPECT_TRUE(entries[0].pattern.empty());
    }
    // Offsets: hex, octal and decimal, each up to its longest form; anything else reads 0.
    const std::pair<const char*, std::uint64_t> offsets[] = {
        {"X10", 16}, {"x1", 0}, {"o17", 15}, {"017", 15}, {"12ab", 12}, {"1 2", 0},
        {"0xffffffffffffffff", UINT64_MAX}, {"0x1ffffffffffffffff", 0}, {"o1777777777777777777777", UINT64_MAX},
        {"o17777777777777777777777", 0}, {"99999999999999999999", UINT64_MAX}, {"123456789012345678901", 0}};
    for (const auto& [text, offset] : offsets) {
        std::vector<filter_entry> entries;
        parse_filter_sig(std::string("4d|") + text, entries);
        EXPECT_EQ(entries.at(0).signature_offset, offset) << text;
    }
}

TEST(Filter, SignaturesInAFile) {
    test_support::temp_dir dir;
    const std::u16string path = to_wide(dir.put("sample.bin", "hello world"));
    const std::pair<const char*, bool> cases[] = {
        {"68 65", true}, {"77 6f|6", true}, {"77 6f|7", false}, {"64|10", true} /* the last byte */,
        {"64 00|10", false} /* one past the end */, {"64|11", false}, {"68|0xffffffffffffffff", false},
    };
    for (const auto& [value, passes] : cases) {
        std::vector<filter_entry> entries;
        parse_filter_sig(value, entries);
        EXPECT_EQ(match_filter(cmd_params{}, path, entries, nullptr), passes) << value;
        EXPECT_FALSE(match_filter(cmd_params{}, path + u".missing", entries, nullptr)) << value;
    }
}

TEST(Filter, TimeBounds) {
    test_support::temp_dir dir;
    const std::string path = dir.put("sample.bin", "x");
    file_info real, none;
    ASSERT_TRUE(get_file_info(real, path));
    EXPECT_TRUE(real.write_time > ticks_1601_to_1970 && real.create_time != 0);
    EXPECT_FALSE(get_file_info(none, dir / "missing") || none.write_time);
    EXPECT_FALSE(get_file_info(none, "www.example.com"));  // a bare name is never looked up
    const auto entries = filters_of({"*.bin"});
    const std::uint64_t hour = 36000000000ULL, t = real.write_time;
    const std::tuple<bool, std::uint64_t, bool, std::uint64_t, bool> cases[] = {  // start and stop bound, passes
        {true, t - hour, false, 0, true}, {true, t + hour, false, 0, false}, {false, 0, true, t + hour, true},
        {false, 0, true, t - hour, false}, {true, t - hour, true, UINT64_MAX, true}};
    cmd_params params;
    for (const auto& [start_on, start, stop_on, stop, passes] : cases) {
        params.start_filter = {start_on, start, 0};
        params.stop_filter = {stop_on, stop, 0};
        file_info facts;
        EXPECT_EQ(match_filter(params, to_wide(path), entries, &facts), passes);
        EXPECT_EQ(facts.write_time, t) << "facts are filled for the caller";
        EXPECT_TRUE(match_filter(params, to_wide(path), entries, nullptr));  // no facts, no time test
    }
    // Facts already filled are taken as they are.
    params.start_filter = {true, t + hour, 0};
    file_info later{t + 2 * hour, t + 2 * hour};
    EXPECT_TRUE(match_filter(params, to_wide(path), entries, &later));
    // A host name has no file, so a time bound drops it.
    EXPECT_FALSE(match_filter(params, u"a.example", filters_of({"*"}), &none));
}

}  // namespace

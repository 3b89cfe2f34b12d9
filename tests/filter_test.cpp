// The input filter: the -filter grammar, the name and path tests, the
// signature entries of -filter_sig and the file-time bounds.
#include "input/filter.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "driver/cmd_params.h"
#include "input/text_convert.h"
#include "platform/fileio.h"

namespace {

namespace fs = std::filesystem;

std::vector<filter_entry> filters_of(std::initializer_list<const char*> values) {
    std::vector<filter_entry> all, one;
    for (const char* value : values) {
        parse_filter(value, one);
        all.insert(all.end(), one.begin(), one.end());
    }
    return all;
}

// Entries written as pattern plus flags: F star front, B star back, P path, A all.
std::string describe(const std::vector<filter_entry>& entries) {
    std::string text;
    for (const filter_entry& e : entries) {
        text += "[" + to_utf8(e.pattern) + "]";
        if (e.star_front) text += "F";
        if (e.star_back) text += "B";
        if (e.is_path) text += "P";
        if (e.match_all) text += "A";
        text += " ";
    }
    return text;
}

TEST(Filter, Grammar) {
    const struct {
        const char* value;
        const char* entries;
    } cases[] = {
        {"a.example", "[a.example] "},
        {"*Example*", "[example]FB "},
        {"*.example", "[.example]F "},
        {"node*", "[node]B "},
        {"ab*cd", "[abcd] "},  // an inner star is dropped and marks nothing
        {"**", "[]F "},
        {"a**", "[a]B "},
        {"\\Dir", "[\\dir]P "},
        {"a.example | b.example", "[a.example] [b.example] "},
        {"a.example,b.example", "[a.example] [b.example] "},
        {"a|b,c", "[a|b] [c] "},  // "," wins over "|"
        {" a ", "[ a ] "},        // a lone token keeps its blanks
        {"", "[] "},
        {"|", "[|] "},
        {"a.example|*", "[*]A "},
        {"*|a.example", "[*]A "},
        {"a:b", "[a] "},
        {"2001:*", "[2001] "},
        {"*:x", "[*]A "},
    };
    for (const auto& c : cases) EXPECT_EQ(describe(filters_of({c.value})), c.entries) << c.value;
    std::vector<filter_entry> entries;
    EXPECT_TRUE(parse_filter("", entries));
}

TEST(Filter, Matching) {
    const struct {
        std::initializer_list<const char*> filters;
        const char16_t* text;
        bool passes;
    } cases[] = {
        {{"*example*"}, u"Node1.Example.net", true},
        {{"*.example"}, u"a.example", true},
        {{"*.example"}, u"a.example.example", false},  // only the first occurrence counts
        {{"node*"}, u"node.a.example", true},
        {{"node*"}, u"xnode.a.example", false},
        {{"a.example"}, u"A.EXAMPLE", true},
        {{"a.example"}, u"a.example.net", false},
        {{"ab*cd"}, u"abcd", true},
        {{"a.example|b.example"}, u"b.example", true},
        {{"a.example,b.example"}, u"c.example", false},
        {{"a.example", "*"}, u"anything", true},
        {{""}, u"a.example", false},
        {{"**"}, u"a.example", false},
        {{"**"}, u"dir\\", true},  // the only name it passes is the empty one
        {{"2001:*"}, u"2001:db8::1", false},
        {{"2001:*"}, u"2001", true},
        {{"\\dir"}, u"dir", false},  // a bare name has the directory "."
        {{"\\a"}, u"x\\a\\b", true},
        {{"\\a"}, u"x\\ab\\c", false},
        {{"\\a"}, u"x/a/b", true},  // slashes are taken for backslashes
        {{"\\a"}, u"X\\A\\b", true},
        {{"\\a"}, u"x\\a", false},  // "a" is the name here, not a directory
        {{"\\a", "*.txt"}, u"x/b/c.txt", true},
        {{"\\b"}, u"\\b", true},  // a path pattern is tried against the name too
        {{"*.txt"}, u"C:\\logs\\A.TXT", true},
        {{}, u"anything", true},
        {{}, u"", false},  // a line that could not be made wide
        {{"*"}, u"", false},
    };
    cmd_params params;
    for (const auto& c : cases) {
        const auto entries = filters_of(c.filters);
        EXPECT_EQ(match_filter(params, c.text, entries, nullptr), c.passes) << to_utf8(c.text);
    }
}

TEST(Filter, Offsets) {
    const struct {
        const char* text;
        bool ok;
        std::uint64_t value;
    } cases[] = {
        {"16", true, 16},        {"0x10", true, 16},     {"X10", true, 16},
        {"o17", true, 15},       {"017", true, 15},      {"  5", true, 5},
        {"abc", true, 0},        {"12ab", true, 12},     {"x1", true, 0},
        {"5 ", false, 0},        {"1 2", false, 0},      {"", false, 0},
        {"   ", false, 0},
        {"0xffffffffffffffff", true, UINT64_MAX},
        {"0x1ffffffffffffffff", false, 0},  // 17 hex digits
        {"o1777777777777777777777", true, UINT64_MAX},
        {"o17777777777777777777777", false, 0},
        {"99999999999999999999", true, UINT64_MAX},
        {"123456789012345678901", false, 0},
        {"          0x1234567890123456789", false, 0},  // 31 characters in all
    };
    for (const auto& c : cases) {
        std::uint64_t value = 77;
        EXPECT_EQ(parse_offset(c.text, value), c.ok) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
    }
}

TEST(Filter, SignatureValues) {
    const struct {
        const char* value;
        std::vector<std::uint8_t> bytes;  // empty: no entry
        std::uint64_t offset;
    } cases[] = {
        {"4d 5a", {0x4d, 0x5a}, 0},
        {"4d5a", {0x5a}, 0},  // each piece is cut to 8 bits
        {"4d 5a|0x10", {0x4d, 0x5a}, 16},
        {"4d, 2", {0x4d}, 2},
        {"4d|1|2", {0x4d}, 0},  // an offset only with exactly two tokens
        {"zz 0x7f", {0x00, 0x7f}, 0},
        {"123456789", {0xff}, 0},  // past 32 bits: all ones
        {"|", {}, 0},
        {"", {}, 0},
    };
    for (const auto& c : cases) {
        std::vector<filter_entry> entries;
        parse_filter_sig(c.value, entries);
        if (c.bytes.empty()) {
            EXPECT_TRUE(entries.empty()) << c.value;
            continue;
        }
        ASSERT_EQ(entries.size(), 1u) << c.value;
        EXPECT_EQ(entries[0].signature, c.bytes) << c.value;
        EXPECT_EQ(entries[0].signature_offset, c.offset) << c.value;
        EXPECT_TRUE(entries[0].pattern.empty());
    }
}

class FilterFile : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "vexa_filter_XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        dir_ = pattern;
        path_ = (dir_ / "sample.bin").string();
        std::FILE* f = std::fopen(path_.c_str(), "wb");
        ASSERT_NE(f, nullptr);
        std::fputs("hello world", f);
        std::fclose(f);
    }
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(dir_, ignored);
    }
    fs::path dir_;
    std::string path_;
    cmd_params params_;
};

TEST_F(FilterFile, Signatures) {
    const struct {
        const char* value;
        bool passes;
    } cases[] = {
        {"68 65", true},          // "he" at 0
        {"77 6f|6", true},        // "wo" at 6
        {"77 6f|7", false},
        {"64|10", true},          // the last byte
        {"64 00|10", false},      // one byte past the end
        {"64|11", false},
        {"68|0xffffffffffffffff", false},
    };
    for (const auto& c : cases) {
        std::vector<filter_entry> entries;
        parse_filter_sig(c.value, entries);
        EXPECT_EQ(match_filter(params_, to_wide(path_), entries, nullptr), c.passes) << c.value;
        EXPECT_FALSE(match_filter(params_, to_wide(path_ + ".missing"), entries, nullptr)) << c.value;
    }
}

TEST_F(FilterFile, TimeBounds) {
    file_info real;
    ASSERT_TRUE(get_file_info(real, path_));
    const auto entries = filters_of({"*.bin"});
    const std::uint64_t hour = 36000000000ULL;
    const struct {
        bool start_on;
        std::uint64_t start;
        bool stop_on;
        std::uint64_t stop;
        bool passes;
    } cases[] = {
        {true, real.write_time - hour, false, 0, true},
        {true, real.write_time + hour, false, 0, false},
        {false, 0, true, real.write_time + hour, true},
        {false, 0, true, real.write_time - hour, false},
        {true, real.write_time - hour, true, UINT64_MAX, true},
    };
    for (const auto& c : cases) {
        params_.start_filter = {c.start_on, c.start, 0};
        params_.stop_filter = {c.stop_on, c.stop, 0};
        file_info facts;
        EXPECT_EQ(match_filter(params_, to_wide(path_), entries, &facts), c.passes);
        EXPECT_EQ(facts.write_time, real.write_time) << "facts are filled for the caller";
        // Without facts there is no time test at all.
        EXPECT_TRUE(match_filter(params_, to_wide(path_), entries, nullptr));
    }
    // Facts already filled are taken as they are.
    params_.start_filter = {true, real.write_time + hour, 0};
    file_info later{real.write_time + 2 * hour, real.write_time + 2 * hour};
    EXPECT_TRUE(match_filter(params_, to_wide(path_), entries, &later));
    // A host name has no file, so a time bound drops it.
    file_info none;
    EXPECT_FALSE(match_filter(params_, u"a.example", filters_of({"*"}), &none));
}

}  // namespace

// The directory walk of -enumdir on a temporary tree: order, depth, filter.
#include "input/dir_walk.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "input/filter.h"
#include "input/stdin_stream.h"
#include "input/text_convert.h"
#include "platform/os.h"

namespace {

namespace fs = std::filesystem;

class DirWalk : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "vexa_walk_XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        root_ = pattern;
        for (const char* file : {"a.txt", "b.log", "c.txt", "sub1/d.txt", "sub1/deeper/e.txt",
                                 "sub1/deeper/deepest/f.txt", "sub2/g.log", "sub2/h.txt"})
            touch(root_ / file);
        fs::create_directory(root_ / "empty");
    }
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    static void touch(const fs::path& path) {
        fs::create_directories(path.parent_path());
        if (std::FILE* f = std::fopen(path.c_str(), "wb")) std::fclose(f);
    }
    // The tool's path text of a directory: backslashes throughout.
    static std::string windows_form(const fs::path& path) {
        std::string text = path.string();
        std::replace(text.begin(), text.end(), '/', '\\');
        return text;
    }

    // Everything the stream hands out after start_walk.
    static std::vector<std::string> walk(const std::string& root, std::uint32_t depth,
                                         const std::vector<filter_entry>& filters = {}) {
        kvportdir::stdin_stream_ex stream;
        EXPECT_TRUE(stream.start_walk(to_wide(root), depth, filters));
        std::vector<std::string> paths;
        std::string line;
        while (paths.size() < 1000 && stream.read_line(line, true)) paths.push_back(line);
        EXPECT_FALSE(stream.read_line(line, true));
        return paths;
    }

    // What the walk should give, told recursively: the files of a directory
    // in the reverse of the system's listing, then its subdirectories, also
    // in reverse, each with everything below it.
    static void expect_walk(const std::string& dir, std::uint32_t levels_left,
                            std::vector<std::string>& out) {
        std::vector<os::dir_item> items;
        os::list_directory(dir, items);
        std::reverse(items.begin(), items.end());
        for (const auto& item : items)
            if (!item.is_directory) out.push_back(dir + "\\" + item.name);
        if (levels_left == 0) return;
        for (const auto& item : items)
            if (item.is_directory) expect_walk(dir + "\\" + item.name, levels_left - 1, out);
    }

    fs::path root_;
};

TEST_F(DirWalk, DepthAndOrder) {
    const std::string root = windows_form(root_);
    for (std::uint32_t depth : {0u, 1u, 2u, 3u, 7u}) {
        std::vector<std::string> expected;
        expect_walk(root, depth, expected);
        EXPECT_EQ(walk(root, depth), expected) << "depth " << depth;
        EXPECT_EQ(walk(root + "\\", depth), expected) << "trailing separator, depth " << depth;
    }
    EXPECT_EQ(walk(root, 0).size(), 3u);
    EXPECT_EQ(walk(root, 1).size(), 6u);
    EXPECT_EQ(walk(root, 3).size(), 8u);
}

TEST_F(DirWalk, SlashRootAndEmptyWalks) {
    const std::vector<std::string> paths = walk(root_.string(), 0);
    ASSERT_EQ(paths.size(), 3u);
    for (const auto& path : paths) EXPECT_EQ(path.rfind(root_.string() + "/\\/", 0), 0u) << path;
    EXPECT_TRUE(walk(windows_form(root_ / "empty"), 5).empty());
    EXPECT_TRUE(walk(windows_form(root_ / "no-such-dir"), 5).empty());
}

TEST_F(DirWalk, FilterLooksAtFileNamesOnly) {
    std::vector<filter_entry> filters;
    parse_filter("*.txt", filters);
    std::vector<std::string> expected;
    expect_walk(windows_form(root_), 1, expected);
    std::erase_if(expected, [](const std::string& p) { return !p.ends_with(".txt"); });
    // sub1 and sub2 don't pass the filter, yet their files come out.
    EXPECT_EQ(walk(windows_form(root_), 1, filters), expected);
    EXPECT_EQ(expected.size(), 4u);
}

TEST_F(DirWalk, StarStepsAndLongPaths) {
    // "\*\" stands for every directory there: here sub1, sub2, empty.
    std::vector<std::string> got = walk(windows_form(root_) + "\\*\\", 0);
    std::sort(got.begin(), got.end());
    const std::string base = windows_form(root_);
    EXPECT_EQ(got, (std::vector<std::string>{base + "\\sub1\\d.txt", base + "\\sub2\\g.log",
                                             base + "\\sub2\\h.txt"}));
    // A star inside a name searches for names that begin (in any case) with
    // what stands before it; the base then gets a separator of its own.
    EXPECT_EQ(walk(base + "\\A*", 0), std::vector<std::string>{base + "\\A\\\\a.txt"});

    // Past 256 characters the listing takes the long form, and the paths it
    // finds lose that prefix again.
    fs::path deep = root_;
    for (int i = 0; i < 3; ++i) deep /= std::string(90, static_cast<char>('p' + i));
    touch(deep / "x.txt");
    const std::string deep_text = windows_form(deep);
    ASSERT_GT(deep_text.size(), 256u);
    EXPECT_EQ(walk(deep_text, 0), std::vector<std::string>{deep_text + "\\x.txt"});
}

TEST_F(DirWalk, NonAsciiNamesRoundTrip) {
    touch(root_ / "empty" / "caf\xC3\xA9.txt");
    const std::string dir = windows_form(root_ / "empty");
    EXPECT_EQ(walk(dir, 0), std::vector<std::string>{dir + "\\caf\xC3\xA9.txt"});
}

TEST(AcceptPath, PrefixAndFilter) {
    const std::u16string long_tail(50, u'x');
    const struct {
        std::u16string path;
        std::u16string result;
    } cases[] = {
        {u"C:\\dir\\a.txt", u"C:\\dir\\a.txt"},
        {u"\\\\?\\C:\\short", u"\\\\?\\C:\\short"},  // up to 46 characters: kept
        {u"\\\\?\\C:\\" + long_tail, u"C:\\" + long_tail},
        {u"\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy1\\x",
         u"\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy1\\x"},
    };
    for (const auto& c : cases) {
        std::u16string path = c.path;
        EXPECT_TRUE(kvportdir::accept_path(path, false, {}));
        EXPECT_EQ(path, c.result);
    }
    std::vector<filter_entry> filters;
    parse_filter("*.txt", filters);
    std::u16string path = u"C:\\dir\\a.log";
    EXPECT_FALSE(kvportdir::accept_path(path, true, filters));
    EXPECT_TRUE(kvportdir::accept_path(path, false, filters));
}

}  // namespace

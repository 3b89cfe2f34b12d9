// The directory walk of -enumdir on a temporary tree: order, depth, filter.
#include "input/dir_walk.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "input/filter.h"
#include "input/stdin_stream.h"
#include "input/text_convert.h"
#include "platform/os.h"
#include "support/fixtures.h"

namespace {

struct DirWalk : testing::Test {
    test_support::temp_dir dir;
    std::string root;  // the tool's path text of the tree: backslashes throughout
    void SetUp() override {
        for (const char* file : {"a.txt", "b.log", "c.txt", "sub1/d.txt", "sub1/deeper/e.txt",
                                 "sub1/deeper/deepest/f.txt", "sub2/g.log", "sub2/h.txt", "empty/"})
            dir.put(file);
        root = dir.root.string();
        std::replace(root.begin(), root.end(), '/', '\\');
    }
};

// Everything the stream hands out after start_walk.
std::vector<std::string> walk(const std::string& root, std::uint32_t depth,
                              const std::vector<filter_entry>& filters = {}) {
    kvportdir::stdin_stream_ex stream;
    EXPECT_TRUE(stream.start_walk(to_wide(root), depth, filters));
    std::vector<std::string> paths;
    std::string line;
    while (paths.size() < 1000 && stream.read_line(line, true)) paths.push_back(line);
    EXPECT_FALSE(stream.read_line(line, true));
    return paths;
}

// What the walk should give, told recursively: the files of a directory in
// the reverse of the system's listing, then its subdirectories, also in
// reverse, each with everything below it.
void expect_walk(const std::string& dir, std::uint32_t levels_left, std::vector<std::string>& out) {
    std::vector<os::dir_item> items;
    os::list_directory(dir, items);
    std::reverse(items.begin(), items.end());
    for (const auto& item : items)
        if (!item.is_directory) out.push_back(dir + "\\" + item.name);
    for (const auto& item : items)
        if (item.is_directory && levels_left > 0) expect_walk(dir + "\\" + item.name, levels_left - 1, out);
}

TEST_F(DirWalk, DepthAndOrder) {
    for (std::uint32_t depth : {0u, 1u, 3u, 7u}) {
        std::vector<std::string> expected;
        expect_walk(root, depth, expected);
        EXPECT_EQ(expected.size(), depth == 0 ? 3u : depth == 1 ? 6u : 8u);
        EXPECT_EQ(walk(root, depth), expected) << "depth " << depth;
        EXPECT_EQ(walk(root + "\\", depth), expected) << "trailing separator, depth " << depth;
    }
}

TEST_F(DirWalk, SlashRootAndEmptyWalks) {
    const std::vector<std::string> paths = walk(dir.root.string(), 0);
    ASSERT_EQ(paths.size(), 3u);
    for (const auto& path : paths) EXPECT_TRUE(path.starts_with(dir.root.string() + "/\\/")) << path;
    EXPECT_TRUE(walk(root + "\\empty", 5).empty());
    EXPECT_TRUE(walk(root + "\\no-such-dir", 5).empty());
}

TEST_F(DirWalk, FilterLooksAtFileNamesOnly) {
    std::vector<filter_entry> filters;
    parse_filter("*.txt", filters);
    std::vector<std::string> expected;
    expect_walk(root, 1, expected);
    std::erase_if(expected, [](const std::string& p) { return !p.ends_with(".txt"); });
    // sub1 and sub2 don't pass the filter, yet their files come out.
    EXPECT_EQ(walk(root, 1, filters), expected);
    EXPECT_EQ(expected.size(), 4u);
}

TEST_F(DirWalk, StarStepsLongPathsAndNonAsciiNames) {
    // "\*\" stands for every directory there: here sub1, sub2, empty.
    std::vector<std::string> got = walk(root + "\\*\\", 0);
    std::sort(got.begin(), got.end());
    EXPECT_EQ(got, (std::vector<std::string>{root + "\\sub1\\d.txt", root + "\\sub2\\g.log",
                                             root + "\\sub2\\h.txt"}));
    // A star inside a name searches for names that begin (in any case) with
    // what stands before it; the base then gets a separator of its own.
    EXPECT_EQ(walk(root + "\\A*", 0), std::vector<std::string>{root + "\\A\\\\a.txt"});
    // Past 256 characters the listing takes the long form, and the paths it
    // finds lose that prefix again.
    std::string deep, deep_text = root;
    for (char c : {'p', 'q', 'r'}) deep += std::string(90, c) + "/", deep_text += "\\" + std::string(90, c);
    dir.put(deep + "x.txt");
    ASSERT_GT(deep_text.size(), 256u);
    EXPECT_EQ(walk(deep_text, 0), std::vector<std::string>{deep_text + "\\x.txt"});
    dir.put("empty/caf\xC3\xA9.txt");
    EXPECT_EQ(walk(root + "\\empty", 0), std::vector<std::string>{root + "\\empty\\caf\xC3\xA9.txt"});
}

TEST(AcceptPath, PrefixAndFilter) {
    const std::u16string tail(50, u'x'), device = u"\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy1\\x";
    const std::pair<std::u16string, std::u16string> cases[] = {
        {u"C:\\dir\\a.txt", u"C:\\dir\\a.txt"}, {u"\\\\?\\C:\\short", u"\\\\?\\C:\\short"},  // up to 46: kept
        {u"\\\\?\\C:\\" + tail, u"C:\\" + tail}, {device, device},
    };
    for (auto [path, result] : cases) {
        EXPECT_TRUE(kvportdir::accept_path(path, false, {}));
        EXPECT_EQ(path, result);
    }
    std::vector<filter_entry> filters;
    parse_filter("*.txt", filters);
    std::u16string path = u"C:\\dir\\a.log";
    EXPECT_FALSE(kvportdir::accept_path(path, true, filters));
    EXPECT_TRUE(kvportdir::accept_path(path, false, filters));
}

}  // namespace

// The directory walk of -enumdir on a temporary tree; its order and depth are the end-to-end tests'.
#include "input/dir_walk.h"

#include <algorithm>

#include "input/filter.h"
#include "input/stdin_stream.h"
#include "platform/text_convert.h"
#include "support/fixtures.h"

namespace {

using paths = std::vector<std::string>;

// Everything the stream hands out after start_walk, sorted.
paths walk(const std::string& root, std::uint32_t depth, const char* filter = nullptr) {
    std::vector<filter_entry> filters;
    if (filter) parse_filter(filter, filters);
    kvportdir::stdin_stream_ex stream;
    stream.start_walk(to_wide(root), depth, filters);
    paths found;
    for (std::string line; found.size() < 1000 && stream.read_line(line, true);) found.push_back(line);
    std::sort(found.begin(), found.end());
    return found;
}

TEST(DirWalk, WhatAWalkFinds) {
    test_support::temp_dir dir;
    for (const char* file : {"a.txt", "b.log", "sub1/d.txt", "sub1/x/e.txt", "sub2/g.log", "empty/"}) dir.put(file);
    std::string slashed = dir.root.generic_string(), root = slashed;
    std::replace(root.begin(), root.end(), '/', '\\');
    // Directories that don't pass the filter are walked all the same.
    EXPECT_EQ(walk(root, 1, "*.txt"), (paths{root + "\\a.txt", root + "\\sub1\\d.txt"}));
    // A root with slashes keeps them, and the tool's separator is added.
    EXPECT_EQ(walk(slashed, 0), (paths{slashed + "/\\/a.txt", slashed + "/\\/b.log"}));
    EXPECT_TRUE(walk(root + "\\empty", 5).empty());
    EXPECT_TRUE(walk(root + "\\no-such-dir", 5).empty());
    // "\*\" stands for every directory there: here sub1, sub2, empty.
    EXPECT_EQ(walk(root + "\\*\\", 0), (paths{root + "\\sub1\\d.txt", root + "\\sub2\\g.log"}));
    // Past 256 characters the listing takes the long form, and the paths it finds lose that prefix again.
    std::string deep = std::string(90, 'p') + "/" + std::string(90, 'q') + "/" + std::string(90, 'r');
    dir.put(deep + "/caf\xC3\xA9.txt");
    std::replace(deep.begin(), deep.end(), '/', '\\');
    EXPECT_EQ(walk(root + "\\" + deep, 0), paths{root + "\\" + deep + "\\caf\xC3\xA9.txt"});
}

}  // namespace

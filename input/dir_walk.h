#pragma once
// The directory walk behind -enumdir: path text rules of the listing. The
// walk itself is driven by kvportdir::stdin_stream_ex (start_walk, next_path).

#include <string>
#include <vector>

#include "input/filter_entry.h"

namespace kvportdir {

struct walk_entry {
    std::u16string path;
    bool is_directory = false;
};

// Filters a found path (when test) by its name, and drops the "\\?\" prefix
// from a long path unless it names a global device. False if refused.
bool accept_path(std::u16string& path, bool test, const std::vector<filter_entry>& filters);

// Appends what stands in the directory path, after resolving each "\*\"
// step into the directories that stand there.
void list_matching(const std::u16string& path, std::vector<walk_entry>& entries);

// Appends the entries of one directory (with dirs_only, its directories, each
// ending in the separator). True if something was added.
bool list_directory(std::u16string path, std::vector<walk_entry>& entries, bool dirs_only, bool use_slash);

// Resolves the first "\*\" (or "/*/") of each text into the directories that
// stand there; a text whose step has none is emptied. True if it changed
// something: repeat until false.
bool expand_dir_stars(std::vector<std::u16string>& dirs, bool use_slash);

}  // namespace kvportdir

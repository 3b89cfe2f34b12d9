#include "input/dir_walk.h"

#include <utility>
#include <vector>

#include "input/filter.h"
#include "input/stdin_stream.h"
#include "platform/os.h"
#include "platform/text.h"

namespace kvportdir {

namespace {

constexpr auto npos = std::u16string::npos;
constexpr std::u16string_view long_prefix = u"\\\\?\\";
// The length of a shadow copy device path, which keeps its prefix.
constexpr std::size_t shadow_path_length = 46;
constexpr std::size_t max_plain_path = 256;

}  // namespace

bool accept_path(std::u16string& path, bool test, const std::vector<filter_entry>& filters) {
    if (test && !match_entries(path, filters)) return false;
    if (path.size() < 5 || !path.starts_with(long_prefix)) return true;
    if (path.size() > shadow_path_length &&
        !same_text(std::u16string_view(path).substr(long_prefix.size(), 6), u"global"))
        path.erase(0, long_prefix.size());
    return true;
}

bool list_directory(std::u16string path, std::vector<walk_entry>& entries, bool dirs_only, bool use_slash) {
    if (path.empty() || path == u"." || path == u"..") return false;
    if (path.size() > max_plain_path && !path.starts_with(long_prefix)) path.insert(0, long_prefix);
    std::vector<os::dir_item> items;
    if (!os::find_entries(path, items)) return false;
    // The base drops one trailing backslash; after any other last character
    // a backslash is added, so "a/b/" gives "a/b/\" and the paths "a/b/\/x".
    std::u16string base = path;
    if (base.back() == u'\\') {
        base.pop_back();
    } else {
        base.push_back(u'\\');
    }
    const char16_t sep = use_slash ? u'/' : u'\\';
    const std::size_t before = entries.size();
    std::vector<std::u16string> streams;
    for (const os::dir_item& item : items) {
        if (dirs_only && !item.is_directory) continue;
        std::u16string full = base;
        full += sep;
        full += item.name;
        if (dirs_only) full += sep;
        if (item.is_directory) {
            entries.push_back({std::move(full), true});
            continue;
        }
        // A file, then each of its named streams as "file:name".
        os::named_streams(full, streams);
        entries.push_back({std::move(full), false});
        const std::size_t file_at = entries.size() - 1;
        for (const std::u16string& stream : streams)
            entries.push_back({entries[file_at].path + stream, false});
    }
    return entries.size() > before;
}

bool expand_dir_stars(std::vector<std::u16string>& dirs, bool use_slash) {
    const std::u16string_view step = use_slash ? u"/*/" : u"\\*\\";
    bool changed = false;
    std::vector<walk_entry> found;
    for (std::size_t i = 0, count = dirs.size(); i < count; ++i) {
        const std::size_t at = dirs[i].find(step);
        if (dirs[i].empty() || at == npos) continue;
        found.clear();
        list_directory(dirs[i].substr(0, at + 1), found, true, use_slash);
        const std::u16string rest = dirs[i].substr(at + step.size());
        changed = true;
        if (found.empty()) {
            dirs[i].clear();
            continue;
        }
        dirs[i] = found[0].path + rest;
        for (std::size_t k = 1; k < found.size(); ++k) dirs.push_back(found[k].path + rest);
    }
    return changed;
}

void list_matching(const std::u16string& path, std::vector<walk_entry>& entries) {
    const bool use_slash = path.find(u'/') != npos;
    const char16_t sep = use_slash ? u'/' : u'\\';
    std::u16string work = path;
    if (work.empty() || work.back() != sep) work.push_back(sep);
    std::vector<std::u16string> dirs{std::move(work)};
    while (expand_dir_stars(dirs, use_slash)) {}
    for (const std::u16string& dir : dirs) {
        if (dir.empty()) continue;
        const std::size_t star = dir.find(u'*');
        list_directory(star == npos ? dir : dir.substr(0, star), entries, false, use_slash);
    }
}

void stdin_stream_ex::start_walk(const std::u16string& root, std::uint32_t depth,
                                 const std::vector<filter_entry>& walk_filters) {
    reset();
    max_depth = depth;
    filters = walk_filters;
    std::u16string start = root;
    accept_path(start, false, filters);
    pending_dirs.emplace_back(std::move(start), 0);
    open_ = true;
    is_walking = true;
}

bool stdin_stream_ex::next_path(std::u16string& path) {
    std::vector<walk_entry> entries;
    for (;;) {
        path.clear();
        if (!pending_paths.empty()) {
            path = std::move(pending_paths.back());
            pending_paths.pop_back();
            return true;
        }
        if (pending_dirs.empty()) return false;
        // Directories below the deepest level were pushed all the same; they
        // are dropped here, unlisted.
        while (!pending_dirs.empty() && pending_dirs.back().second > max_depth) pending_dirs.pop_back();
        if (pending_dirs.empty()) continue;
        auto [dir, depth] = std::move(pending_dirs.back());
        pending_dirs.pop_back();
        accept_path(dir, false, filters);
        entries.clear();
        list_matching(dir, entries);
        for (walk_entry& entry : entries) {
            if (entry.is_directory) {
                pending_dirs.emplace_back(std::move(entry.path), depth + 1);
            } else if (accept_path(entry.path, true, filters)) {
                pending_paths.push_back(std::move(entry.path));
            }
        }
    }
}

}  // namespace kvportdir

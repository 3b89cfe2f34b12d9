#include "input/filter.h"

#include <cstring>
#include <utility>

#include "platform/fileio.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "platform/text_convert.h"

namespace {

constexpr auto npos = std::u16string::npos;

// One token of a -filter value into its entry.
void fill_entry(std::u16string token, filter_entry& entry) {
    std::u16string& pattern = entry.pattern;
    pattern = std::move(token);
    // What stands behind a colon has no say.
    if (const std::size_t colon = pattern.find(u':'); colon != npos) {
        pattern.erase(colon);
        if (pattern == u"*") {
            entry.match_all = true;
            return;
        }
    }
    // Stars go one by one from the left; only one at the very front or back
    // at the moment it goes leaves a mark, so "ab*cd" is the name "abcd".
    for (std::size_t star = pattern.find(u'*'); star != npos; star = pattern.find(u'*')) {
        if (star == 0) {
            entry.star_front = true;
        } else if (star + 1 == pattern.size()) {
            entry.star_back = true;
        }
        pattern.erase(star, 1);
    }
    entry.is_path = !pattern.empty() && pattern.front() == u'\\';
}

bool within_time_bounds(const filter_settings& filter, const std::string& path, file_info& facts) {
    if (facts.write_time == 0 && (!get_file_info(facts, path) || facts.write_time == 0)) return false;
    const time_bound& start = filter.start;
    if (start.active && facts.write_time < start.file_time && facts.create_time < start.file_time)
        return false;
    const time_bound& stop = filter.stop;
    return !(stop.active && (facts.write_time > stop.file_time || facts.create_time > stop.file_time));
}

// The bytes at signature_offset in the file named by path.
bool signature_found(const std::string& path, const filter_entry& entry) {
    uni::fileio file(path);
    if (!file.is_open()) return false;
    const auto size = static_cast<std::uint64_t>(file.known_size());
    const std::size_t length = entry.signature.size();
    if (entry.signature_offset > size || length > size - entry.signature_offset) return false;
    std::string bytes;
    return file.read_at(bytes, length, entry.signature_offset) && bytes.size() == length &&
           std::memcmp(bytes.data(), entry.signature.data(), length) == 0;
}

// A "\" pattern in the directory part: its first occurrence must end where a
// directory name ends. Slashes become backslashes once, for all later entries.
bool dir_matches(const std::u16string& pattern, std::u16string& dir) {
    std::size_t at = dir.find(pattern);
    if (at == npos && dir.find(u'/') != npos) {
        for (char16_t& c : dir)
            if (c == u'/') c = u'\\';
        at = dir.find(pattern);
    }
    if (at == npos) return false;
    const std::size_t end = at + pattern.size();
    return end == dir.size() || dir[end] == u'\\';
}

bool name_matches(const filter_entry& entry, const std::u16string& name) {
    const std::u16string& pattern = entry.pattern;
    if (entry.match_all) return true;
    if (entry.star_front && entry.star_back) return name.find(pattern) != npos;
    if (entry.star_front) {
        // Only the first occurrence counts: "*.example" refuses "a.example.example".
        const std::size_t at = name.find(pattern);
        return at != npos && at + pattern.size() == name.size();
    }
    if (entry.star_back) return name.find(pattern) == 0;
    return !pattern.empty() && pattern == name;
}

}  // namespace

bool parse_filter(std::string_view text, std::vector<filter_entry>& entries) {
    entries.clear();
    std::string lowered(text);
    to_lower(lowered);
    const std::u16string value = to_wide(lowered);
    std::vector<std::u16string> tokens;
    if (value.find(u'|') != npos) split_text(value, u'|', tokens, true);
    // "," wins: "a|b,c" gives "a|b" and "c".
    if (value.find(u',') != npos) split_text(value, u',', tokens, true);
    if (tokens.empty()) tokens.push_back(value);
    entries.resize(tokens.size());
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i] == u"*") {
            filter_entry all;
            all.match_all = true;
            all.pattern = u"*";
            entries.assign(1, std::move(all));
            break;
        }
        fill_entry(std::move(tokens[i]), entries[i]);
    }
    return !entries.empty();
}

void parse_filter_sig(std::string_view value, std::vector<filter_entry>& entries) {
    std::vector<std::string> tokens;
    const bool has_bar = value.find('|') != std::string_view::npos;
    const bool has_comma = value.find(',') != std::string_view::npos;
    if (has_bar) split_text(value, '|', tokens, true, false);
    if (has_comma) split_text(value, ',', tokens, true, false);
    if (!has_bar && !has_comma) tokens.emplace_back(value);
    if (tokens.empty()) return;
    filter_entry entry;
    std::vector<std::string> pieces;
    split_text(tokens[0], ' ', pieces, false, false);
    // Each piece is read as a hex number and cut to its low 8 bits.
    for (const std::string& piece : pieces)
        entry.signature.push_back(static_cast<std::uint8_t>(read_unsigned<std::uint32_t>(piece, 16)));
    if (tokens.size() == 2) parse_offset(tokens[1], entry.signature_offset);
    if (!entry.signature.empty()) entries.push_back(std::move(entry));
}

bool parse_offset(std::string_view text, std::uint64_t& value) {
    value = 0;
    if (text.size() > 30) return false;
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return false;
    const std::string_view rest = text.substr(first);
    if (rest.find(' ') != std::string_view::npos) return false;
    const std::size_t n = rest.size();
    // Read into 64 bits as a stream's extraction reads; the last form finds its base itself.
    if (n > 2 && (rest[1] | 0x20) == 'x') {
        if (n - 2 > 16) return false;
        value = read_unsigned<std::uint64_t>(rest.substr(2), 16);
    } else if (n > 2 && (rest[0] | 0x20) == 'x') {
        if (n - 1 > 16) return false;
        value = read_unsigned<std::uint64_t>(rest.substr(1), 16);
    } else if ((rest[0] | 0x20) == 'o') {
        if (n - 1 > 22) return false;
        value = read_unsigned<std::uint64_t>(rest.substr(1), 8);
    } else {
        if (n > 20) return false;
        value = read_unsigned<std::uint64_t>(rest, 0);
    }
    return true;
}

namespace {

// The entries against text; `path` is the text in UTF-8 for a file to open,
// made once, when first asked for, and shared with the time bounds.
bool match_entries(std::u16string_view text, const std::vector<filter_entry>& entries, std::string& path) {
    if (text.empty()) return false;
    if (entries.empty()) return true;
    if (entries.size() == 1 && entries.front().match_all) return true;
    std::u16string dir, name;
    split_path(text, dir, name);
    to_lower(name);
    bool dir_lowered = false;
    for (const filter_entry& entry : entries) {
        if (entry.is_path) {
            if (!dir_lowered) {
                to_lower(dir);
                dir_lowered = true;
            }
            if (dir_matches(entry.pattern, dir)) return true;
        }
        if (name_matches(entry, name)) return true;
        if (entry.star_front || entry.star_back || entry.signature.empty()) continue;
        if (path.empty()) path = to_utf8(text);
        if (signature_found(path, entry)) return true;
    }
    return false;
}

}  // namespace

bool match_filter(const filter_settings& filter, std::u16string_view text, file_info* facts) {
    if (text.empty()) return false;
    std::string path;
    if (facts && (filter.start.active || filter.stop.active)) {
        path = to_utf8(text);
        if (!within_time_bounds(filter, path, *facts)) return false;
    }
    return match_entries(text, filter.entries, path);
}

bool match_entries(std::u16string_view text, const std::vector<filter_entry>& entries) {
    std::string path;
    return match_entries(text, entries, path);
}

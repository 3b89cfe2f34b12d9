#include "platform/paths.h"

#include <vector>

#include "platform/os.h"
#include "platform/text.h"

namespace {

constexpr std::size_t npos = std::string::npos;
constexpr std::size_t expand_limit = 512;
// A variable whose value names itself ("A" = "%A%") would be expanded for
// ever without growing; no real path has this many references.
constexpr int max_references = 4096;

bool lookup_variable(std::string_view name, std::string& value) {
    // Such a name can't be set; the C library would match it against the
    // wrong variable.
    if (name.find('\0') != npos || name.find('=') != npos) return false;
    return os::get_env(std::string(name), value);
}

// Cuts at the separator at `at` (when above 0); ".." as the name becomes "."
// and moves onto dir behind `seps` separators.
template <class Char>
bool split_at(std::basic_string_view<Char> text, std::size_t at, std::size_t seps, std::basic_string<Char>& dir,
              std::basic_string<Char>& name) {
    if (at == npos || at == 0) return false;
    dir.assign(text.substr(0, at));
    name.assign(text.substr(at + 1));
    if (name.size() == 2 && name[0] == '.' && name[1] == '.') {
        name.resize(1);
        dir.append(seps, text[at]);
        dir.append(2, Char('.'));
    }
    return true;
}

template <class Char>
bool split_text_path(std::basic_string_view<Char> text, std::basic_string<Char>& dir, std::basic_string<Char>& name) {
    dir.clear();
    name.clear();
    if (text.empty()) return false;
    const std::size_t backslash = text.rfind(Char('\\'));
    if (backslash != npos) {
        if (split_at(text, backslash, 1, dir, name)) return true;
    } else if (split_at(text, text.rfind(Char('/')), 2, dir, name)) {
        return true;
    }
    dir.assign(1, Char('.'));
    name.assign(text);
    return true;
}

// Quotes around a path typed on a command line become blanks, to be trimmed.
void unquote(std::string& path) {
    replace_char(path, '"', ' ');
    const std::size_t first = path.find('\'');
    if (first != npos && path.find('\'', first + 1) != npos) replace_char(path, '\'', ' ');
}

void fold_separators(std::string& text, char sep) {
    std::size_t out = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == sep && out > 0 && text[out - 1] == sep) continue;
        text[out++] = text[i];
    }
    text.resize(out);
}

// Occurrences of ".." with the separator straight before or behind them.
std::size_t count_parent_steps(std::string_view dir, char sep) {
    std::size_t count = 0;
    for (std::size_t at = dir.find(".."); at != npos; at = dir.find("..", at + 2)) {
        const bool before = at > 0 && dir[at - 1] == sep;
        const bool behind = at + 2 < dir.size() && dir[at + 2] == sep;
        if (before || behind) ++count;
    }
    return count;
}

// Resolves the ".." steps of dir against cwd; false when there are none, or
// at least as many as cwd has components.
bool resolve_parent_steps(std::string& dir, std::string_view cwd, char sep) {
    const std::size_t steps = count_parent_steps(dir, sep);
    std::vector<std::string> parts;  // empty pieces fall away
    split_text(cwd, sep, parts, false, false);
    if (steps == 0 || steps >= parts.size()) return false;
    // A POSIX current directory starts at the root: keep that root.
    std::string resolved = !cwd.empty() && cwd.front() == sep ? std::string(1, sep) : std::string();
    for (std::size_t i = 0; i + steps < parts.size(); ++i) {
        resolved += parts[i];
        resolved += sep;
    }
    const std::string_view tail = std::string_view(dir).substr(dir.rfind("..") + 2);
    if (tail.size() > 1) resolved += tail;
    resolved += sep;
    dir = std::move(resolved);
    return true;
}

std::string joined(std::string_view a, char sep, std::string_view b) {
    std::string text;
    text.reserve(a.size() + 1 + b.size());
    text += a;
    text += sep;
    text += b;
    return text;
}

// The result for a path that split_path has cut into dir and name.
std::string full_from_parts(std::string& dir, const std::string& name, std::string result,
                            std::string_view cwd, char sep) {
    if (dir == ".") return name == "." ? joined(cwd, sep, {}) : joined(cwd, sep, name);
    const bool drive = dir.size() > 1 && dir[1] == ':';
    if (dir.front() != '.' && dir.front() != sep && !drive) {
        dir = joined(cwd, sep, dir);
        result = joined(dir, sep, name);
    }
    if (dir.size() >= 2 && dir.front() == '.') {
        dir = dir[1] == '.' ? joined(cwd, sep, dir) : std::string(cwd) + dir.substr(1);
        result = joined(dir, sep, name);
    }
    if (resolve_parent_steps(dir, cwd, sep)) result = name == "." ? dir : dir + name;
    return result;
}

}  // namespace

std::string_view vss_prefix() { return "\\\\?\\GLOBALROOT\\Device\\HarddiskVolumeShadowCopy"; }

std::string expand_path(std::string_view text, bool allow_vss) {
    std::string result(text);
    if (result.size() > expand_limit) return result;
    std::string value;
    std::size_t scan = 0;
    for (int seen = 0; seen < max_references; ++seen) {
        const std::size_t open = result.find('%', scan);
        if (open == npos || open + 1 >= result.size()) break;
        const std::size_t close = result.find('%', open + 1);
        if (close == npos) break;
        const std::string_view name(result.data() + open + 1, close - open - 1);
        if (lookup_variable(name, value)) {
            // The scan stays put: the value is looked through in turn.
            result.replace(open, close - open + 1, value);
        } else {
            if (allow_vss && same_text(name, "vss")) result.replace(open, close - open + 1, vss_prefix());
            scan = close + 1;
        }
        if (result.size() > expand_limit) break;
    }
    return result;
}

bool split_path(std::string_view text, std::string& dir, std::string& name) {
    return split_text_path(text, dir, name);
}

bool split_path(std::u16string_view text, std::u16string& dir, std::u16string& name) {
    return split_text_path(text, dir, name);
}

std::string full_path(std::string_view path) { return full_path(path, os::current_directory()); }

std::string full_path(std::string_view path, std::string_view cwd) {
    std::string text(path);
    unquote(text);
    // Kind by kind, as wide text trims.
    if (!trim_each_kind(text)) return text;
    const char sep = text.find('/') != npos ? '/' : '\\';
    if (text.front() == sep) return text.size() > 1 && text[1] == sep ? text : std::string();
    std::string dir, name;
    split_path(text, dir, name);
    std::string result = full_from_parts(dir, name, text, cwd, sep);
    fold_separators(result, sep);
    return result;
}

bool strip_separators(std::string& text) {
    const std::size_t last = text.find_last_not_of("/\\");
    text.erase(last == npos ? 0 : last + 1);
    return !text.empty();
}

void replace_char(std::string& text, char from, char to) {
    for (char& c : text)
        if (c == from) c = to;
}

std::size_t remove_char(std::string& text, char c) {
    const std::size_t before = text.size();
    std::erase(text, c);
    return before - text.size();
}

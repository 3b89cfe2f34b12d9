#include "platform/fileio.h"

#include <algorithm>

#include "platform/paths.h"
#include "platform/text_convert.h"

namespace uni {

namespace {
// Reads go in pieces of at most this many bytes.
constexpr std::size_t read_chunk = 0x10000000;

os::open_mode write_mode(bool truncate) {
    return truncate ? os::open_mode::write_truncate : os::open_mode::write_existing;
}

// "\\?\" in front of the full path; a path with a drive ("c:...") or of two
// characters at most is taken as it stands.
std::string long_form(const std::string& path) {
    return "\\\\?\\" + (path.size() > 2 && path[1] != ':' ? full_path(path) : path);
}
}  // namespace

fileio::fileio() = default;

fileio::fileio(std::string_view path) {
    if (!open_file(path, false, false)) reset();
}

fileio::~fileio() { close(); }

void fileio::reset() {
    fd_ = os::invalid_file;
    size_ = 0;
    opened_ = false;
}

bool fileio::open_results(std::string_view path, bool truncate) {
    return open_with(path, true, write_mode(truncate));
}

bool fileio::open_file(std::string_view path, bool writable, bool truncate) {
    return open_with(path, writable, writable ? write_mode(truncate) : os::open_mode::read);
}

bool fileio::open_with(std::string_view path, bool writable, os::open_mode mode) {
    if (path.empty()) return false;
    std::string stripped(path);
    strip_separators(stripped);
    if (fd_ != os::invalid_file) {
        close();
        reset();
    }
    opened_ = false;
    // A read-only results file is overwritten, not refused.
    if (writable) os::file_make_writable(stripped);
    const os::opened_file opened = os::file_open(stripped, mode);
    fd_ = opened.file;
    // A path too long for the plain form, or one the system can't follow
    // that way, gets one more try in the long form.
    if (fd_ == os::invalid_file && opened.long_form_may_help)
        fd_ = os::file_open(long_form(stripped), mode).file;
    if (fd_ == os::invalid_file) return false;
    opened_ = true;
    size_ = size();
    return true;
}

void fileio::close() {
    if (fd_ != os::invalid_file) {
        os::file_close(fd_);
        fd_ = os::invalid_file;
    }
}

std::int64_t fileio::size() {
    if (!is_open()) return 0;
    std::uint64_t position = 0;
    std::uint64_t end = 0;
    const bool have_position = os::file_tell(fd_, position);
    if (!os::file_seek_end(fd_, end)) end = 0;
    if (have_position) os::file_seek(fd_, position);
    return static_cast<std::int64_t>(end);
}

bool fileio::read_at(std::string& out, std::size_t count, std::uint64_t offset) {
    if (!is_open() || size_ <= 0 || offset >= static_cast<std::uint64_t>(size_)) return false;
    if (count == 0) return true;
    if (!os::file_seek(fd_, offset)) return false;
    const std::uint64_t to_end = static_cast<std::uint64_t>(size_) - offset;
    out.resize(static_cast<std::size_t>(std::min<std::uint64_t>(count, to_end)));
    std::size_t filled = 0;
    while (filled < out.size()) {
        const std::int64_t got =
            os::file_read(fd_, out.data() + filled, std::min(out.size() - filled, read_chunk));
        if (got <= 0) break;
        filled += static_cast<std::size_t>(got);
    }
    out.resize(filled);
    return true;
}

bool fileio::append_bytes(const void* data, std::size_t length) {
    if (!is_open() || data == nullptr) return false;
    if (length == 0) return true;
    // Whatever moved the position, the bytes go to the end. A file that
    // can't seek (a pipe) is written where it stands.
    os::file_seek_end(fd_);
    if (os::file_write(fd_, data, length) < 0) return false;
    std::uint64_t end = 0;
    size_ = os::file_seek_end(fd_, end) ? static_cast<std::int64_t>(end)
                                        : size_ + static_cast<std::int64_t>(length);
    return true;
}

bool fileio::append_text(std::string_view text) {
    if (!is_open()) return false;
    return text.empty() || append_bytes(text.data(), text.size());
}

}  // namespace uni

bool get_file_info(file_info& info, const std::string& path) {
    info = file_info{};
    if (path.empty()) return false;
    os::file_facts facts;
    if (!os::file_stat(path, os::stat_text::list_line, facts)) return false;
    info.write_time = facts.write_time;
    info.create_time = facts.create_time;
    return true;
}


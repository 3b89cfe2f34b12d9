// Files and directories behind the seam.
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/os.h"
#include "platform/posix/native_path.h"
#include "platform/text.h"
#include "platform/text_convert.h"
#include "platform/time_scale.h"

namespace os {

namespace {
std::uint64_t to_ticks(std::int64_t seconds, std::int64_t nanoseconds) {
    if (seconds < 0) return 0;
    return ticks_1601_to_1970 + static_cast<std::uint64_t>(seconds) * ticks_per_second +
           static_cast<std::uint64_t>(nanoseconds) / 100;
}
}  // namespace

std::string native_path(const std::string& path) {
    std::string native = path;
    if (native.rfind("\\\\?\\", 0) == 0 || native.rfind("\\\\.\\", 0) == 0) native.erase(0, 4);
    for (char& c : native)
        if (c == '\\') c = '/';
    return native;
}

opened_file file_open(const std::string& path, open_mode mode) {
    int flags = O_CLOEXEC;
    switch (mode) {
    case open_mode::read: flags |= O_RDONLY; break;
    case open_mode::write_truncate: flags |= O_WRONLY | O_CREAT | O_TRUNC; break;
    case open_mode::write_existing: flags |= O_RDWR; break;
    }
    std::string native = native_path(path);
    if (native.empty()) return {};
    int fd;
    do { fd = ::open(native.c_str(), flags, 0666); } while (fd < 0 && errno == EINTR);
    return {fd < 0 ? invalid_file : fd};
}

std::int64_t file_write(file_handle file, const void* bytes, std::size_t count) {
    const char* p = static_cast<const char*>(bytes);
    std::size_t left = count;
    while (left > 0) {
        ssize_t n = ::write(file, p, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            return -1;
        }
        p += n;
        left -= static_cast<std::size_t>(n);
    }
    return static_cast<std::int64_t>(count);
}

std::int64_t file_read(file_handle file, void* buffer, std::size_t capacity) {
    ssize_t n;
    do { n = ::read(file, buffer, capacity); } while (n < 0 && errno == EINTR);
    return n < 0 ? -1 : static_cast<std::int64_t>(n);
}

bool file_seek_end(file_handle file) { return ::lseek(file, 0, SEEK_END) >= 0; }

bool file_seek_end(file_handle file, std::uint64_t& end) {
    const off_t offset = ::lseek(file, 0, SEEK_END);
    if (offset < 0) return false;
    end = static_cast<std::uint64_t>(offset);
    return true;
}

bool file_tell(file_handle file, std::uint64_t& offset) {
    const off_t position = ::lseek(file, 0, SEEK_CUR);
    if (position < 0) return false;
    offset = static_cast<std::uint64_t>(position);
    return true;
}

bool file_seek(file_handle file, std::uint64_t offset) {
    return ::lseek(file, static_cast<off_t>(offset), SEEK_SET) >= 0;
}

bool file_close(file_handle file) { return file == invalid_file || ::close(file) == 0; }

bool file_remove(const std::string& path) { return ::unlink(native_path(path).c_str()) == 0; }

void file_make_writable(const std::string& path) {
    std::string native = native_path(path);
    struct stat facts {};
    if (::stat(native.c_str(), &facts) == 0 && !(facts.st_mode & S_IWUSR))
        ::chmod(native.c_str(), (facts.st_mode & 07777) | S_IWUSR);
}

// Only a list line with a "/" or "\" is a path here: a host name or a bare
// word never reaches the disk.
bool file_stat(const std::string& path, stat_text text, file_facts& facts) {
    if (text == stat_text::list_line && path.find_first_of("/\\") == std::string::npos) return false;
    std::string native = native_path(path);
    struct statx ext {};
    if (::statx(AT_FDCWD, native.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &ext) != 0) return false;
    facts.is_directory = S_ISDIR(ext.stx_mode);
    facts.is_regular = S_ISREG(ext.stx_mode);
    facts.size = ext.stx_size;
    facts.write_time = to_ticks(ext.stx_mtime.tv_sec, ext.stx_mtime.tv_nsec);
    facts.create_time = (ext.stx_mask & STATX_BTIME) ? to_ticks(ext.stx_btime.tv_sec, ext.stx_btime.tv_nsec)
                                                     : to_ticks(ext.stx_ctime.tv_sec, ext.stx_ctime.tv_nsec);
    return true;
}

// The search of path + "*.*" as a listing of the directory part, its names
// matched (in any case) against the rest. A name that path text can't carry
// is passed over: a star would read as a step to resolve, a backslash as a
// separator, and bytes that aren't UTF-8 have no wide form.
bool find_entries(std::u16string_view path, std::vector<dir_item>& items) {
    items.clear();
    const std::size_t cut = path.find_last_of(u"\\/");
    const std::string dir =
        cut == std::u16string_view::npos ? std::string(".") : to_utf8(path.substr(0, cut + 1));
    const std::string prefix = to_utf8(cut == std::u16string_view::npos ? path : path.substr(cut + 1));
    const std::string native = native_path(dir);
    DIR* listing = ::opendir(native.c_str());
    if (!listing) return false;
    while (dirent* entry = ::readdir(listing)) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == ".." || !same_text(name.substr(0, prefix.size()), prefix)) continue;
        std::u16string wide = to_wide(name);
        if (wide.empty() || wide.find_first_of(u"*\\") != std::u16string::npos) continue;
        bool is_dir = entry->d_type == DT_DIR;
        if (entry->d_type == DT_UNKNOWN) {
            struct stat facts {};
            is_dir = ::stat((native + "/" + entry->d_name).c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
        }
        items.push_back({std::move(wide), is_dir});
    }
    ::closedir(listing);
    return true;
}

// Files here have no named streams.
void named_streams(std::u16string_view, std::vector<std::u16string>& names) { names.clear(); }

bool get_env(const std::string& name, std::string& value) {
    const char* found = ::getenv(name.c_str());
    if (!found) return false;
    value = found;
    return true;
}

std::string current_directory() {
    std::string path(4096, '\0');
    if (!::getcwd(path.data(), path.size())) return std::string();
    path.resize(path.find('\0'));
    return path;
}

}  // namespace os

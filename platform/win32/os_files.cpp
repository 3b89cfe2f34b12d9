// Files and directories through the C runtime's descriptors and the wide
// calls of the system. Files are opened untranslated (binary): the report
// stream has made its CR LF already.
#include "platform/win32/win32.h"

#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include "platform/clamp.h"
#include "platform/os.h"

namespace os {

namespace {
constexpr std::u16string_view long_prefix = u"\\\\?\\";
constexpr std::u16string_view device_prefix = u"\\\\.\\";
constexpr DWORD open_directories_too = 0x2000000;  // FILE_FLAG_BACKUP_SEMANTICS

std::uint64_t ticks_of(const FILETIME& time) {
    return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

// The facts as both of the system's answers below carry them.
template <typename Answer>
void fill_facts(const Answer& answer, file_facts& facts) {
    facts.is_directory = (answer.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    facts.is_regular = !facts.is_directory && (answer.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) == 0;
    facts.size = (static_cast<std::uint64_t>(answer.nFileSizeHigh) << 32) | answer.nFileSizeLow;
    facts.write_time = ticks_of(answer.ftLastWriteTime);
    facts.create_time = ticks_of(answer.ftCreationTime);
}

// A list line with a drive or a stream (a colon) is opened in the long form;
// one without must be in the long or the device form already. Anything else,
// a host name say, is no file here. Empty if the line is none.
std::u16string list_line_target(std::u16string_view line) {
    std::u16string target;
    if (line.find(u':') != std::u16string_view::npos) {
        target.assign(long_prefix).append(line);
    } else if (line.starts_with(long_prefix) || line.starts_with(device_prefix)) {
        target.assign(line);
    }
    return target;
}
}  // namespace

opened_file file_open(const std::string& path, open_mode mode) {
    int flags = _O_BINARY | _O_NOINHERIT;
    int permission = _S_IREAD | _S_IWRITE;
    switch (mode) {
    case open_mode::read:
        flags |= _O_RDONLY;
        permission = _S_IREAD;
        break;
    case open_mode::write_truncate: flags |= _O_RDWR | _O_CREAT | _O_TRUNC; break;
    case open_mode::write_existing: flags |= _O_RDWR; break;
    }
    const std::wstring native = win32::wide(path);
    if (native.empty()) return {};
    // Shared for reading and writing: other processes may go on using the file.
    const int fd = ::_wsopen(native.c_str(), flags, _SH_DENYNO, permission);
    if (fd >= 0) return {fd};
    const DWORD error = GetLastError();
    return {invalid_file, error == ERROR_FILENAME_EXCED_RANGE || error == ERROR_PATH_NOT_FOUND};
}

std::int64_t file_write(file_handle file, const void* bytes, std::size_t count) {
    const char* p = static_cast<const char*>(bytes);
    std::size_t left = count;
    while (left > 0) {
        const int n = ::_write(file, p, clamp_to_int(left));
        if (n < 0) return -1;
        p += n;
        left -= static_cast<std::size_t>(n);
    }
    return static_cast<std::int64_t>(count);
}

std::int64_t file_read(file_handle file, void* buffer, std::size_t capacity) {
    return ::_read(file, buffer, clamp_to_int(capacity));
}

bool file_seek_end(file_handle file) { return ::_lseeki64(file, 0, SEEK_END) >= 0; }

bool file_seek_end(file_handle file, std::uint64_t& end) {
    const __int64 offset = ::_lseeki64(file, 0, SEEK_END);
    if (offset < 0) return false;
    end = static_cast<std::uint64_t>(offset);
    return true;
}

bool file_tell(file_handle file, std::uint64_t& offset) {
    const __int64 position = ::_telli64(file);
    if (position < 0) return false;
    offset = static_cast<std::uint64_t>(position);
    return true;
}

bool file_seek(file_handle file, std::uint64_t offset) {
    return ::_lseeki64(file, static_cast<__int64>(offset), SEEK_SET) >= 0;
}

bool file_close(file_handle file) { return file == invalid_file || ::_close(file) == 0; }

bool file_remove(const std::string& path) { return ::_wunlink(win32::wide(path).c_str()) == 0; }

void file_make_writable(const std::string& path) {
    SetFileAttributesW(win32::wide(path).c_str(), FILE_ATTRIBUTE_NORMAL);
}

// A path is asked by name. A list line's file is opened for reading and asked
// through its handle: a line naming a file the tool may not read passes no
// time bound.
bool file_stat(const std::string& path, stat_text text, file_facts& facts) {
    if (text == stat_text::path) {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        const std::wstring native = win32::wide(path);
        if (native.empty() || !GetFileAttributesExW(native.c_str(), GetFileExInfoStandard, &data))
            return false;
        fill_facts(data, facts);
        return true;
    }
    const std::u16string target = list_line_target(to_wide(path));
    if (target.empty()) return false;
    const HANDLE file =
        CreateFileW(win32::wide(target).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, open_directories_too, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    BY_HANDLE_FILE_INFORMATION info{};
    const bool known = GetFileInformationByHandle(file, &info) != FALSE;
    CloseHandle(file);
    if (known) fill_facts(info, facts);
    return known;
}

bool find_entries(std::u16string_view path, std::vector<dir_item>& items) {
    items.clear();
    const std::wstring search = win32::wide(path) + L"*.*";
    WIN32_FIND_DATAW found{};
    const HANDLE search_handle = FindFirstFileW(search.c_str(), &found);
    if (search_handle == INVALID_HANDLE_VALUE) return false;
    do {
        const std::wstring_view name = found.cFileName;
        if (name == L"." || name == L"..") continue;
        items.push_back({std::u16string(name.begin(), name.end()),
                         (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
    } while (FindNextFileW(search_handle, &found));
    FindClose(search_handle);
    return true;
}

// The unnamed data stream "::$DATA" comes first and is passed over; each
// other stream ":name:$DATA" is given as ":name".
void named_streams(std::u16string_view path, std::vector<std::u16string>& names) {
    names.clear();
    WIN32_FIND_STREAM_DATA found{};
    const HANDLE search_handle =
        FindFirstStreamW(win32::wide(path).c_str(), FindStreamInfoStandard, &found, 0);
    if (search_handle == INVALID_HANDLE_VALUE) return;
    bool first = true;
    do {
        std::u16string name(found.cStreamName, found.cStreamName + std::wcslen(found.cStreamName));
        if (!(first && name == u"::$DATA")) {
            const std::size_t data_at = name.find(u":$DATA");
            if (data_at != std::u16string::npos) name.erase(data_at);
            names.push_back(std::move(name));
        }
        first = false;
    } while (FindNextStreamW(search_handle, &found));
    FindClose(search_handle);
}

bool get_env(const std::string& name, std::string& value) {
    const std::wstring wide_name = win32::wide(name);
    const wchar_t* found = wide_name.empty() ? nullptr : ::_wgetenv(wide_name.c_str());
    if (!found) return false;
    value = win32::utf8(found);
    return true;
}

std::string current_directory() {
    wchar_t* path = ::_wgetcwd(nullptr, 0);
    if (!path) return std::string();
    std::string text = win32::utf8(path);
    std::free(path);
    return text;
}

}  // namespace os

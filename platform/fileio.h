#pragma once
// The file object: one open descriptor. Every write goes to the end of the
// file; the bytes given here reach the disk unchanged.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/os.h"

namespace uni {

class fileio {
public:
    fileio();
    // Opens for reading; the caller asks is_open.
    explicit fileio(std::string_view path);
    ~fileio();
    fileio(const fileio&) = delete;
    fileio& operator=(const fileio&) = delete;

    // For writing, made anew (and emptied) with truncate, else only if it
    // exists. Trailing separators of the path are dropped, and a read-only
    // file is made writable first.
    bool open_results(std::string_view path, bool truncate);
    // For reading only, or for writing as open_results.
    bool open_file(std::string_view path, bool writable, bool truncate);
    bool is_open() const { return fd_ != os::invalid_file && opened_; }
    // Closes the descriptor. The known size stays until the next open.
    void close();

    // The size found by seeking to the end (and back); 0 when closed.
    std::int64_t size();
    // The size as of the open or the last write.
    std::int64_t known_size() const { return size_; }

    // Up to count bytes from offset into out (fewer at the end of the file).
    // False if closed, if offset is not below the known size, or the seek fails.
    bool read_at(std::string& out, std::size_t count, std::uint64_t offset);
    // Writes at the end of the file. False if closed, data is null or the
    // write fails; true for length 0.
    bool append_bytes(const void* data, std::size_t length);
    bool append_text(std::string_view text);

private:
    bool open_with(std::string_view path, bool writable, os::open_mode mode);
    void reset();

    os::file_handle fd_ = os::invalid_file;
    std::int64_t size_ = 0;
    bool opened_ = false;
};

}  // namespace uni

// The two time stamps of a file, 100 ns ticks since 1601-01-01 UTC. A
// write_time of 0 means not filled.
struct file_info {
    std::uint64_t write_time = 0;
    std::uint64_t create_time = 0;
};

// Time stamps of a file or directory. Which texts are looked up is the
// system's rule: a bare host name gives false without touching the disk.
bool get_file_info(file_info& info, const std::string& path);

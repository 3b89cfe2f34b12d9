#pragma once
// The one seam to the operating system. Every call vexa makes into the system
// goes through these functions; the modules above them are the same on every
// platform, and a new platform is one new folder beside platform/posix.
//
// Paths are handed in as the tool's own path text (Windows form, backslashes
// allowed); the implementation turns them into what its system expects.
// Byte counts are 64-bit on every platform (long is 32 bits on Win64).

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system_identity.h"

namespace os {

// ---------------------------------------------------------------- network --
using socket_handle = std::intptr_t;
inline constexpr socket_handle invalid_socket = -1;

// Start and release the network stack around one attempt (nothing on POSIX).
void net_startup();
void net_cleanup();

// A new IPv4 UDP socket, or invalid_socket.
socket_handle udp_open();
// Closes the socket; true when it is closed.
bool socket_close(socket_handle handle);
// Ends the sending side of a socket that could not be closed.
void socket_shutdown_send(socket_handle handle);
// Dotted IPv4 text to an address in network order, as inet_addr gives it
// (0xFFFFFFFF for text it can't read).
std::uint32_t ipv4_address(const char* text);
// One sendto of up to `length` bytes to address:port (port in host order).
// Result: the bytes taken, or -1.
std::int64_t send_datagram(socket_handle handle, const std::uint8_t* bytes, std::size_t length,
                           std::uint32_t address, std::uint16_t port);
// Waits up to timeout_secs whole seconds (0: look once) for the socket to
// become readable. True when it is.
bool wait_readable(socket_handle handle, std::uint32_t timeout_secs);
// One recvfrom into buffer. Result: the datagram's length, or -1.
std::int64_t receive_datagram(socket_handle handle, std::uint8_t* buffer, std::size_t capacity);

// ------------------------------------------------------- clock and waits --
// The UTC clock: whole seconds since 1970-01-01 and the milliseconds.
void clock_now(std::uint64_t& unix_seconds, std::uint32_t& milliseconds);
// A monotonic-or-wall clock for the run timer: seconds since 1970 and the
// nanoseconds of that second.
void clock_precise(std::uint64_t& unix_seconds, std::uint32_t& nanoseconds);
// Blocks the only thread for this many milliseconds.
void sleep_ms(std::uint32_t milliseconds);

// ------------------------------------------------------ standard streams --
// Writes all bytes (retrying short writes). False if the stream refused.
bool write_stdout(const char* bytes, std::size_t count);
bool write_stderr(const char* bytes, std::size_t count);
// One read of the standard input: bytes read, 0 at its end, -1 on failure.
std::int64_t read_stdin(char* buffer, std::size_t capacity);
// Stops any translation of line ends on the standard input.
bool stdin_binary_mode();
// Whether the process has a standard input at all.
bool stdin_exists();
// Console set-up at start (UTF-8 output, standard output untranslated) and
// its undoing at exit, which also runs when the process ends by exit().
void console_begin();
void console_end();
// Around the making of the run record: the real system directories for a
// 32-bit program on a 64-bit system, where there is such a thing.
void start_stage_begin();
void start_stage_end();

// ------------------------------------------------------------------ files --
using file_handle = int;
inline constexpr file_handle invalid_file = -1;

// write_truncate creates a missing file and empties one that is there;
// write_existing is for reading and writing, and only a file that is there
// already.
enum class open_mode { read, write_truncate, write_existing };
struct opened_file {
    file_handle file = invalid_file;
    // On failure: whether the long-path form ("\\?\" in front of the full
    // path) may succeed where the path failed (name too long, path not
    // found). Never on a system without that form.
    bool long_form_may_help = false;
};
// Opens (creating where the mode writes) a file, untranslated: the report
// stream makes its own CR LF. The file is invalid_file on failure, and the
// reason travels with it, so a retry depends on nothing but this result.
opened_file file_open(const std::string& path, open_mode mode);
// Bytes written or read, -1 on failure.
std::int64_t file_write(file_handle file, const void* bytes, std::size_t count);
std::int64_t file_read(file_handle file, void* buffer, std::size_t capacity);
// Moves to the end (for appending) or to an absolute offset.
bool file_seek_end(file_handle file);
// Moves to the end and tells that offset.
bool file_seek_end(file_handle file, std::uint64_t& end);
// The current offset.
bool file_tell(file_handle file, std::uint64_t& offset);
bool file_seek(file_handle file, std::uint64_t offset);
bool file_close(file_handle file);
bool file_remove(const std::string& path);
// Before an open for writing: a read-only file is made writable, so that
// it can be overwritten. The result is of no interest.
void file_make_writable(const std::string& path);

struct file_facts {
    bool is_directory = false;
    bool is_regular = false;
    std::uint64_t size = 0;
    std::uint64_t create_time = 0;  // 100 ns ticks since 1601-01-01 UTC
    std::uint64_t write_time = 0;   // 100 ns ticks since 1601-01-01 UTC
};
// What file_stat is handed.
enum class stat_text {
    path,       // a path of the tool's own, looked up as it stands
    list_line,  // a line of a list, often a host name: looked up only where the
                // system's own rules make it a path, and then as those rules say
};
// Facts of an existing file or directory, in one lookup; false if the text
// names none or it can't be looked at.
bool file_stat(const std::string& path, stat_text text, file_facts& facts);

struct dir_item {
    std::u16string name;
    bool is_directory = false;
};
// What a search for path + "*.*" finds: the entries of the directory part of
// path whose names begin with the rest of it, in the order the system gives
// them, without "." and "..". False if the search fails.
bool find_entries(std::u16string_view path, std::vector<dir_item>& items);
// The named data streams of a file, each as ":name" (none where the system
// has no such thing).
void named_streams(std::u16string_view path, std::vector<std::u16string>& names);

// ------------------------------------------------------------ environment --
// The value of an environment variable; false if it is not set.
bool get_env(const std::string& name, std::string& value);
// The current directory, in the tool's path text.
std::string current_directory();

// ------------------------------------------------------------ host facts --
// The computer's name; false on failure.
bool computer_name(std::string& name);
// Full path of the running program; false on failure.
bool program_path(std::string& path);
// The system's name, version numbers and word size, as the system tells them;
// the run record's text of them is made above the seam.
void get_system_identity(system_identity& identity);
// Where the program file lies: on a network file system, or on removable media.
bool is_remote_path(const std::string& path);
bool is_removable_path(const std::string& path);

// ---------------------------------------------------------- named event --
// Sets the named event (created if it does not exist yet). False on failure.
bool set_named_event(const std::string& name);

}  // namespace os

#pragma once
// The one seam to the operating system. Every call vexa makes into the system
// goes through these functions; the modules above them are the same on every
// platform, and a new platform is one new folder beside platform/posix.
//
// Paths are handed in as the tool's own path text (Windows form, backslashes
// allowed); the implementation turns them into what its system expects.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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
long send_datagram(socket_handle handle, const std::uint8_t* bytes, std::size_t length,
                   std::uint32_t address, std::uint16_t port);
// Waits up to timeout_secs whole seconds (0: look once) for the socket to
// become readable. True when it is.
bool wait_readable(socket_handle handle, std::uint32_t timeout_secs);
// One recvfrom into buffer. Result: the datagram's length, or -1.
long receive_datagram(socket_handle handle, std::uint8_t* buffer, std::size_t capacity);

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
long read_stdin(char* buffer, std::size_t capacity);
// Stops any translation of line ends on the standard input.
bool stdin_binary_mode();
// Whether the process has a standard input at all.
bool stdin_exists();
// Console set-up at start (UTF-8 output) and its undoing at exit.
void console_begin();
void console_end();

// ------------------------------------------------------------------ files --
using file_handle = int;
inline constexpr file_handle invalid_file = -1;

// write_existing: for reading and writing, and only a file that is there
// already; the other writing modes create a missing file.
enum class open_mode { read, write_truncate, write_keep, write_existing };
// Opens (creating where the mode writes) a file. invalid_file on failure.
file_handle file_open(const std::string& path, open_mode mode);
// Bytes written or read, -1 on failure.
long file_write(file_handle file, const void* bytes, std::size_t count);
long file_read(file_handle file, void* buffer, std::size_t capacity);
// Moves to the end (for appending) or to an absolute offset.
bool file_seek_end(file_handle file);
// Moves to the end and tells that offset.
bool file_seek_end(file_handle file, std::uint64_t& end);
// The current offset.
bool file_tell(file_handle file, std::uint64_t& offset);
bool file_seek(file_handle file, std::uint64_t offset);
bool file_close(file_handle file);
bool file_remove(const std::string& path);
// Gives the owner write permission if the file exists and lacks it.
void file_make_writable(const std::string& path);

struct file_facts {
    bool is_directory = false;
    bool is_regular = false;
    std::uint64_t size = 0;
    std::uint64_t create_time = 0;  // 100 ns ticks since 1601-01-01 UTC
    std::uint64_t write_time = 0;   // 100 ns ticks since 1601-01-01 UTC
};
// Facts of an existing file or directory; false if it can't be looked at.
bool file_stat(const std::string& path, file_facts& facts);

struct dir_item {
    std::string name;
    bool is_directory = false;
};
// The entries of a directory in the order the system gives them, without
// "." and "..". False if it can't be listed.
bool list_directory(const std::string& path, std::vector<dir_item>& items);

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
struct system_release {
    std::string os_name;        // e.g. "Linux"
    std::uint32_t major = 0, minor = 0, patch = 0;
    bool is_64bit = false;
};
bool system_info(system_release& release);
// Where the program file lies: on a network file system, or on removable media.
bool is_remote_path(const std::string& path);
bool is_removable_path(const std::string& path);

// ---------------------------------------------------------- named event --
// Sets the named event (created if it does not exist yet). False on failure.
bool set_named_event(const std::string& name);

}  // namespace os

#pragma once
// Starting the tool and reading what it wrote, for the end-to-end and the
// interop tests. The tool is the built vexa, or VEXA_TEST_PROGRAM started
// through VEXA_TEST_LAUNCHER (vexa.exe through Wine, an arm64 build through
// qemu-user); VEXA_TEST_HELPER is the Windows program of support/helper_win32.cpp.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "support/fixtures.h"
#include "support/responder.h"

namespace test_support {

struct target_program {
    std::string program, launcher, helper;
    bool windows = false;  // its standard error is in text mode: run_vexa turns its CR LF into LF
};
const target_program& target();
// The words that start `program` with these arguments, launcher first.
std::vector<std::string> command_for(const std::vector<std::string>& args, const std::string& program = target().program);
// Starts a child on fds 0 1 2 (-1: this process's own), ended with this process; its pid, -1 on failure.
int spawn(const std::vector<std::string>& words, const int fds[3]);
// Reads `fd` until `text` has come (an empty `text`: until the end), waiting up to 10 s for each piece.
bool read_until(int fd, std::string& got, const std::string& text);
std::string read_file(const std::filesystem::path& path);
// A path as Windows under Wine names it: on drive Z:, the root.
std::string on_drive_z(const std::filesystem::path& path);
// The program's name as the target sees it in its first argument.
std::string program_seen();

// Watches the named event of -signal over one run: a named semaphore on Linux;
// for a Windows target the helper, which holds the event open while the tool runs.
class event_watch {
public:
    explicit event_watch(std::string name);
    ~event_watch() { was_set(); }
    bool was_set();  // once, after the run

private:
    std::string name_;
    int pid_ = -1, to_helper_ = -1;
};

struct vexa_run {
    int exit_code = -1, signal = 0;  // -1 from main reads 255; the signal that ended it
    bool timed_out = false;
    std::string out, err;
};
// One run: arguments without the program's name, bytes on its standard input, a hard time limit.
vexa_run run_vexa(const std::vector<std::string>& args, std::string_view input = {},
                  std::chrono::milliseconds limit = std::chrono::seconds(20));

struct e2e_run {
    vexa_run run;
    std::vector<datagram> queries;  // what the server saw
    std::string body;               // the report behind the run record, date and time masked
};
// One run with `-server <the responder's address>` added behind the arguments.
e2e_run run_against(const responder& server, std::vector<std::string> args, std::string_view input = {});

// A reply to "a.b. A IN" behind its ID, flags QR RD RA, one answer: a.b. A 300 with bytes at the
// edges of what the dump shows as text (31.32.126.127).
inline const datagram one_a_reply = join({{0x81, 0x80, 0, 1, 0, 1, 0, 0, 0, 0},
                                          {1, 'a', 1, 'b', 0, 0, 1, 0, 1},
                                          {0xC0, 12, 0, 1, 0, 1, 0, 0, 1, 0x2C, 0, 4, 0x1f, 0x20, 0x7e, 0x7f}});
datagram with_id(const datagram& query, const datagram& rest);  // the query's ID bytes, then `rest`
reply_handler answer(datagram rest);                               // `rest` behind each query's own ID
// "name/type" of every query the server saw, joined by blanks.
std::string seen(const responder& server);
// The ID of a query as the report shows it: first byte low, second high.
std::uint16_t id_of(const datagram& query);

// Everything behind the first empty line (the run record); all if there is none.
std::string_view report_body(std::string_view out);
std::vector<std::string> lines_of(std::string_view body);  // without their CR LF
// The 13 cells of a report row, the last to the line's end; none for other lines.
std::vector<std::string_view> cells_of(std::string_view line, std::string_view separator);
// Each letter and digit of the date and time cells of every row becomes '#'.
std::string mask_date_time(std::string_view report, std::string_view separator = " | ");
testing::AssertionResult lines_end_in_crlf(std::string_view text);
// An expected report: {id4} {id} the ID as 4 hex digits or unpadded, {xx} {c} its first byte in a dump,
// {srv} the server, {srvhdr} "DNSserv" padded to its width; lines joined by CR LF.
std::string expand(std::string_view text, std::uint16_t id, std::string_view server);

}  // namespace test_support

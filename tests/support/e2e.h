#pragma once
// What the end-to-end tests share: one run of vexa (against a responder),
// scripted replies, and reading a report: past the run record, with the date
// and time cells masked so the rest compares byte for byte.

#include <chrono>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "support/fixtures.h"
#include "support/responder.h"

namespace test_support {

// The program the end-to-end tests run: the built vexa, or the build named
// by VEXA_TEST_PROGRAM, started through VEXA_TEST_LAUNCHER if that is set
// (vexa.exe through Wine, an arm64 build through qemu-user; its words split
// at blanks), and VEXA_TEST_HELPER (support/helper_win32.cpp).
// A Windows target's standard error is in text mode: run_vexa turns its CR LF into LF.
struct target_program {
    std::string program, launcher, helper;
    bool windows = false;
};
const target_program& target();
// The words that start `program` with these arguments, launcher first.
std::vector<std::string> command_for(const std::vector<std::string>& args,
                                     const std::string& program = target().program);
// Starts a child on these words with fds 0 1 2 (-1: the test's own); its pid, -1 on failure.
int spawn(const std::vector<std::string>& words, const int fds[3]);
// Reads `fd` until `text` has come (or, for an empty `text`, the end), waiting up to 10 s for each piece.
bool read_until(int fd, std::string& got, const std::string& text);
// A file's bytes; empty if it can't be read.
std::string read_file(const std::filesystem::path& path);
// A path of this machine as Windows under Wine names it: on drive Z:, the root.
std::string on_drive_z(const std::filesystem::path& path);
// The program's name as the target sees it in its first argument.
std::string program_seen();
// Runs the Windows test helper; its exit code, -1 if it could not run.
int run_helper(const std::vector<std::string>& args);

// Watches the named event of -signal over one run: a named semaphore on Linux;
// for a Windows target the helper, which holds the event open while the tool runs.
class event_watch {
public:
    explicit event_watch(std::string name);
    ~event_watch();
    event_watch(const event_watch&) = delete;
    event_watch& operator=(const event_watch&) = delete;
    bool was_set();  // once, after the run

private:
    std::string name_;
    int pid_ = -1, to_probe_ = -1;
};

// One run of the target: arguments (program name not included), bytes on its standard input, a hard time limit.
struct vexa_run {
    int exit_code = -1;      // as the system keeps it: -1 from main reads 255
    int signal = 0;          // the signal that ended it, 0 if it exited
    bool timed_out = false;  // killed at the time limit
    std::string out, err;
};
vexa_run run_vexa(const std::vector<std::string>& args, std::string_view input = {},
                  std::chrono::milliseconds limit = std::chrono::seconds(20));

// One run with `-server <the responder's address>` added.
struct e2e_run {
    vexa_run run;
    std::vector<datagram> queries;  // what the server saw
    std::string body;               // report after the run record, date/time masked
};
e2e_run run_against(const responder& server, std::vector<std::string> args, std::string_view input = {});

// A reply to "a.b. A IN" from the flags on (QR RD RA), one answer: a.b. A 300 1.2.3.4.
inline const datagram one_a_reply = join({{0x81, 0x80, 0, 1, 0, 1, 0, 0, 0, 0},
                                          {1, 'a', 1, 'b', 0, 0, 1, 0, 1},
                                          {0xC0, 12, 0, 1, 0, 1, 0, 0, 1, 0x2C, 0, 4, 1, 2, 3, 4}});
// The query's two ID bytes in front of `rest` (which starts at the flags).
datagram with_id(const datagram& query, const datagram& rest);
// "name/type" of every query the server saw, joined by blanks.
std::string seen(const responder& server);
// Answers every query with `rest` behind the query's own ID.
reply_handler answer(datagram rest);
// The ID of a query as the report shows it: first byte low, second high.
std::uint16_t id_of(const datagram& query);

// Everything behind the first empty line (the run record); all if there is none.
std::string_view report_body(std::string_view out);
// The lines of a report, without their CR LF.
std::vector<std::string> lines_of(std::string_view body);
// The 13 cells of a report row, the last to the line's end; none for other lines.
std::vector<std::string_view> cells_of(std::string_view line, std::string_view separator);
// Each letter and digit of the date and time cells of every row becomes '#'.
std::string mask_date_time(std::string_view report, std::string_view separator = " | ");
// There is a row, and every row's date "yyyy-mm-dd" and time "hh:mm:ss.xxx" is
// a real UTC instant within a second of [earliest, latest] (seconds since 1970).
testing::AssertionResult date_time_cells_valid(std::string_view report, std::string_view separator,
                                               std::time_t earliest, std::time_t latest);
// Every line ends in CR LF, with no stray CR or LF elsewhere.
testing::AssertionResult lines_end_in_crlf(std::string_view text);

// Fills the placeholders of an expected report: {id4} {id} the ID, 4 hex digits
// or unpadded; {xx} {c} its first byte in a dump, as hex and as text; {srv} the
// server, {srvhdr} "DNSserv" padded to its width. Lines are joined with CR LF.
std::string expand(std::string_view text, std::uint16_t id, std::string_view server);

}  // namespace test_support

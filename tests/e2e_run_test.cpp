// Whole runs of the real binary around the queries: list mode, the common
// command line, the XML frame, the dump, the results file, the filter, help
// and the run record, the acts at the end of a run, and the directory walk.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <semaphore.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/e2e.h"

namespace {

using namespace test_support;
namespace fs = std::filesystem;
using clock_type = std::chrono::steady_clock;
using strings = std::vector<std::string>;

// Reply from the flags on; the handler puts the query's ID in front.
const datagram one_a_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},          // QR RD RA; QD 1, AN 1
    {1, 'a', 1, 'b', 0}, {0, 1, 0, 1},               // a.b. A IN
    {0xC0, 12}, {0, 1, 0, 1}, {0, 0, 0x01, 0x2C},    // a.b. A IN, TTL 300
    {0, 4}, {1, 2, 3, 4},                            //   1.2.3.4
});

const std::string erase = "\x1b[2K\r    \r";
const std::string server_message =
    "error: need to specify a DNS server to query using the format: -server <ipv4 addr>\n";
const std::string help_head =
    "-----------------------------------------------------------------------------\n\n"
    "vexa ver: 0.48\n\nusage:\n \n vexa -url <domain to lookup> -server <dns srv ip>\n";
const std::string help_tail =
    "  -filter <*partial*>    = filters data from stdin using pipe\n\n"
    "example of using std input and redirecting the output to a file\n"
    " type hosts.txt | vexa -url_pipe -server 8.8.8.8 > results.txt\n\n";
const std::string csv_header = "query,comment,status,id,DNSserv,date, time-UTC,type,tname,class,ttl,size,data";
const std::string xml_declaration = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
const std::string long_label = std::string(256, 'x') + ".b";  // one label too long to encode
const std::string four_names = "Node1.Example.net\nb.example\nxnode.a\na.example.example\n";

void replace_all(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
}

// {bin}, {srv} and {dir} filled in; "-server <srv>" added unless it stands
// there already or `srv` is empty.
strings args_for(strings args, const std::string& srv, const std::string& dir = {}) {
    bool has_server = srv.empty();
    for (std::string& arg : args) {
        replace_all(arg, "{bin}", VEXA_BINARY);
        replace_all(arg, "{srv}", srv);
        replace_all(arg, "{dir}", dir);
        has_server = has_server || arg == srv;
    }
    if (!has_server) args.insert(args.end(), {"-server", srv});
    return args;
}

// "name/type" of every query the server saw, joined by blanks.
std::string seen(const responder& server) {
    std::string text;
    for (const datagram& q : server.queries()) {
        std::string name;
        std::size_t at = 12;
        for (; at < q.size() && q[at] != 0; at += 1 + q[at])
            name.append(name.empty() ? "" : ".")
                .append(q.begin() + at + 1, q.begin() + std::min(q.size(), at + 1 + q[at]));
        const unsigned type = at + 2 < q.size() ? (q[at + 1] << 8 | q[at + 2]) : 0;
        text += (text.empty() ? "" : " ") + name + "/" + std::to_string(type);
    }
    return text;
}

std::size_t count_of(const std::string& text, const std::string& part) {
    std::size_t n = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++n;
    return n;
}

std::string read_file(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string tool_path_form(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

struct temp_dir {
    fs::path path;
    temp_dir() {
        std::string pattern = (fs::temp_directory_path() / "vexa_run_XXXXXX").string();
        if (::mkdtemp(pattern.data())) path = pattern;
    }
    ~temp_dir() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
};

// Whether the named event of -signal is set; removes it for the next run.
bool take_event(const std::string& name) {
    sem_t* sem = ::sem_open(("/" + name).c_str(), 0);
    if (sem == SEM_FAILED) return false;
    const bool set = ::sem_trywait(sem) == 0;
    ::sem_close(sem);
    ::sem_unlink(("/" + name).c_str());
    return set;
}

// Reads `fd` until `text` has come (or, for an empty `text`, the end), at most `limit`.
bool read_until(int fd, std::string& got, const std::string& text, std::chrono::milliseconds limit) {
    const auto deadline = clock_type::now() + limit;
    while (text.empty() || got.find(text) == std::string::npos) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - clock_type::now());
        pollfd p{fd, POLLIN, 0};
        if (left.count() <= 0 || ::poll(&p, 1, static_cast<int>(left.count())) <= 0) return false;
        char chunk[4096];
        const ssize_t n = ::read(fd, chunk, sizeof chunk);
        if (n <= 0) return text.empty();
        got.append(chunk, static_cast<std::size_t>(n));
    }
    return true;
}

// With -verbose: each query's packets are dumped behind its rows.
TEST(E2eRun, ListReportsEachLineBeforeReadingTheNext) {
    // a.b gets an answer; c.d an empty datagram, which is a time-out.
    responder server([](const datagram& q) {
        return std::vector<datagram>{q.size() > 13 && q[13] == 'a' ? with_id(q, one_a_reply) : datagram{}};
    });
    strings words = args_for({VEXA_BINARY, "-url_pipe", "-csv", "-verbose"}, server.address());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    int in[2], out[2];
    ASSERT_EQ(::pipe2(in, O_CLOEXEC) | ::pipe2(out, O_CLOEXEC), 0);
    posix_spawn_file_actions_t acts;
    ::posix_spawn_file_actions_init(&acts);
    ::posix_spawn_file_actions_adddup2(&acts, in[0], 0);
    ::posix_spawn_file_actions_adddup2(&acts, out[1], 1);
    ::posix_spawn_file_actions_addopen(&acts, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    ::signal(SIGPIPE, SIG_IGN);
    const int spawned = ::posix_spawn(&pid, VEXA_BINARY, &acts, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&acts);
    ::close(in[0]);
    ::close(out[1]);
    ASSERT_EQ(spawned, 0);
    std::string got;
    EXPECT_EQ(::write(in[1], "a.b\n", 4), 4);
    EXPECT_TRUE(read_until(out[0], got, "answer,success", std::chrono::seconds(3))) << got;
    EXPECT_EQ(seen(server), "a.b/1") << "the second line isn't written yet";
    EXPECT_EQ(::write(in[1], "c.d\n", 4), 4);
    ::close(in[1]);
    const bool ended = read_until(out[0], got, "", std::chrono::seconds(5));
    if (!ended) ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ::close(out[0]);
    EXPECT_TRUE(ended && WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(seen(server), "a.b/1 c.d/1");
    EXPECT_EQ(count_of(got, csv_header), 1u) << "one header line per list";
    // Each line as a letter: r row, _ empty, - divider, S and R captions, h hex.
    std::string shape;
    for (const std::string& line : lines_of(report_body(got)))
        shape += line.empty() ? '_' : line == std::string(79, '-') ? '-' : line == "packet that was sent" ? 'S'
                 : line == "packet that was recv'd" ? 'R' : line.starts_with("0000 00") ? 'h' : 'r';
    // header, row, dump of both packets; row, dump of the sent one only.
    EXPECT_EQ(shape, "rr_-Shh_Rhhh-_r_-Shh_-_") << got;
    EXPECT_NE(got.find("00 00 00 00 01 63 01 64  "), std::string::npos) << "the second query's bytes";
}

// Runs that get to their queries against a silent server: what the server
// saw, the report's first line, and a piece of it with the date and time masked.
TEST(E2eRun, WhatTheCommandLineAsks) {
    struct run_case {  // first_line: {srvhdr} as for expand()
        const char* what; strings args; std::string input; const char* seen; const char* contains = "";
        std::string first_line = csv_header; std::string err = erase;
    };
    const run_case cases[] = {
        // list input
        {"empty input: the run record only", {"-url_pipe"}, "", ""},
        {"blank and CR/LF-only lines: no query, no delay", {"-url_pipe", "-delay", "1"}, "\n\r\n\r\r\n\n\r", ""},
        {"CR LF, empty line, LF; last line without its end", {"-url_pipe", "-csv"}, "a.b\r\n\r\nc.d\nb.a",
         "a.b/1 c.d/1 b.a/1"},
        {"a line of blanks, comment-like lines: names", {"-url_pipe", "-csv"}, "   \n#x\n;y\n", "   /1 #x/1 ;y/1"},
        {"a name that can't be encoded leaves no trace", {"-url_pipe", "-csv", "-delay", "1"}, long_label + "\n", ""},
        {"and the next line is read", {"-url_pipe", "-csv"}, long_label + "\na.b\n", "a.b/1"},
        // ties
        {"names are case-blind", {"-Url_Pipe", "-CSV"}, "a.b\n", "a.b/1"},
        {"first -url counts", {"-url", "a.b", "-url", "c.d", "-csv"}, "", "a.b/1"},
        {"first -server counts", {"-url", "a.b", "-server", "{srv}", "-server", "127.0.0.1", "-csv"}, "", "a.b/1"},
        {"common options take words first: -server -csv", {"-url", "a.b", "-server", "-csv", "{srv}"}, "", "a.b/1"},
        {"-ip_pipe -url_pipe asks PTR", {"-ip_pipe", "-url_pipe", "-csv"}, "1.2.3.4\n", "4.3.2.1.in-addr.arpa/12"},
        {"a plain command and a _pipe form: a list", {"-url", "x.y", "-url_pipe", "-csv"}, "a.b\n", "a.b/1"},
        {"-pipe -ip asks PTR for each line", {"-pipe", "-ip", "1.2.3.4", "-csv"}, "5.6.7.8\n",
         "8.7.6.5.in-addr.arpa/12"},
        {"-ipv6 changes nothing", {"-url", "a.b", "-ipv6", "-csv"}, "", "a.b/1"},
        // layouts and formats
        {"-xml -csv is XML", {"-xml", "-csv", "-url", "a.b"}, "", "a.b/1", "", xml_declaration},
        {"-csv -pair_datetime is padded", {"-csv", "-pair_datetime", "-url", "a.b"}, "", "a.b/1",
         ",####-##-##, ##:##:##.###,   1,     A,",
         "query                                   ,comment  ,status ,id  ,{srvhdr},date      , time-UTC    "
         ",type,tname ,class,ttl   ,size,data"},
        {"-no_whitespace", {"-no_whitespace", "-url", "a.b"}, "", "a.b/1", "",
         "query|comment|status|id|DNSserv|date|time-UTC|type|tname|class|ttl|size|data"},
        {"-csv_separator tab", {"-csv", "-csv_separator", "tab", "-url", "a.b"}, "", "a.b/1", "",
         "query\tcomment\tstatus\tid\tDNSserv\tdate\t time-UTC\ttype\ttname\tclass\tttl\tsize\tdata"},
        {"-dateformat", {"-csv", "-dateformat", "mm/dd/yyyy", "-url", "a.b"}, "", "a.b/1",
         ",##/##/####, ##:##:##.###,1,A,"},
        {"-timeformat, lower-cased", {"-csv", "-timeformat", "HH:MM:SS", "-url", "a.b"}, "", "a.b/1",
         ",####-##-##, ##:##:##,1,A,"},
        {"bad -dateformat", {"-csv", "-dateformat", "dd/mm/y", "-url", "a.b"}, "", "a.b/1",
         ",####-##-##, ##:##:##.###,1,A,", csv_header, "invalid dd/mm/y, using default format\n" + erase},
        {"bad -timeformat", {"-csv", "-timeformat", "hh:mm", "-url", "a.b"}, "", "a.b/1",
         ",####-##-##, ##:##:##.###,1,A,", csv_header, "invalid hh:mm, using default format\n" + erase},
        // filter
        {"*example*: case-blind, the line queried as read", {"-url_pipe", "-csv", "-filter", "*example*"}, four_names,
         "Node1.Example.net/1 b.example/1 a.example.example/1"},
        {"*.example: the first occurrence ends the name", {"-url_pipe", "-csv", "-filter", "*.example"}, four_names,
         "b.example/1"},
        {"two tokens, one a star", {"-url_pipe", "-csv", "-filter", "xnode.a|node*"}, four_names,
         "Node1.Example.net/1 xnode.a/1"},
        {"an empty filter passes nothing", {"-url_pipe", "-filter", ""}, four_names, ""},
        {"no filter in single mode", {"-url", "a.b", "-csv", "-filter", "zzz"}, four_names, "a.b/1"},
    };
    for (const run_case& c : cases) {
        responder server(silent(), test_loopback_address(c.what));
        strings args = args_for(c.args, server.address());
        args.insert(args.end(), {"-timeout", "0"});
        const auto start = clock_type::now();
        vexa_run run = run_vexa(args, c.input);
        // -delay follows each query: only lines that are no query keep the run short.
        if (std::count(args.begin(), args.end(), "-delay")) {
            EXPECT_LT(clock_type::now() - start, std::chrono::milliseconds(900)) << c.what;
        }
        EXPECT_EQ(run.exit_code, 0) << c.what;
        EXPECT_EQ(run.err, c.err) << c.what;
        EXPECT_EQ(seen(server), c.seen) << c.what;
        EXPECT_TRUE(run.out.starts_with("vexa ver: 0.48\r\n")) << c.what;
        const std::string body(report_body(run.out));
        const std::size_t queries = server.queries().size();
        EXPECT_EQ(count_of(body, "timeout"), queries) << c.what << ": one row for each query";
        if (queries == 0) {
            EXPECT_EQ(body, "") << c.what;
            continue;
        }
        const std::string first_line = expand(c.first_line, 0, server.address());
        EXPECT_EQ(lines_of(body)[0], first_line) << c.what;
        EXPECT_EQ(count_of(body, first_line), 1u) << c.what;
        EXPECT_NE(mask_date_time(body, ",").find(c.contains), std::string::npos) << c.what;
    }
}

TEST(E2eRun, XmlFrame) {
    const struct {
        const char* what; strings args; const char* input; std::size_t entries; bool foot; int exit_code;
    } cases[] = {
        {"one query", {"-url", "a.b"}, "", 1, true, 0},
        {"-verbose adds nothing", {"-url", "a.b", "-verbose"}, "", 1, true, 0},
        {"a list of two", {"-url_pipe", "-verbose"}, "a.b\nc.d\n", 2, true, 0},
        {"an empty list: head and foot", {"-url_pipe"}, "", 0, true, 0},
        {"a name that can't be encoded: no foot", {"-url", long_label}, "", 0, false, 255},
    };
    for (const auto& c : cases) {
        responder server(silent(), test_loopback_address(c.what));
        strings args = args_for(c.args, server.address());
        args.insert(args.end(), {"-xml", "-timeout", "0"});
        vexa_run run = run_vexa(args, c.input);
        EXPECT_EQ(run.exit_code, c.exit_code) << c.what;
        EXPECT_TRUE(lines_end_in_crlf(run.out)) << c.what;
        strings expected = {xml_declaration, "",
                            std::string("<logdata tool=\"vexa ver: 0.48\" cmdline=\"") + VEXA_BINARY + "\">"};
        const strings lines = lines_of(report_body(run.out));
        for (std::size_t i = 0; i < c.entries && expected.size() < lines.size(); ++i) {
            EXPECT_EQ(lines[expected.size()].rfind("<data_entry><query>", 0), 0u) << c.what;
            expected.push_back(lines[expected.size()]);
        }
        if (c.foot) expected.push_back("</logdata>");
        EXPECT_EQ(lines, expected) << c.what;
    }
}

TEST(E2eRun, ResultsFile) {
    temp_dir dir;
    ::setenv("VEXA_E2E_DIR", dir.path.c_str(), 1);
    const fs::path file = dir.path / "r.txt";
    const std::string unmade = dir.path.string() + "/missing/r.txt";
    struct file_case {  // before: the content of a file that was there
        const char* what; strings args; bool made = true; std::string err = erase; const char* before = nullptr;
        bool read_only = false; bool server = true;
    };
    const file_case cases[] = {
        {"a new file", {"-out", "{dir}/r.txt"}},
        {"-outfile", {"-outfile", "{dir}/r.txt"}},
        {"an existing file is replaced", {"-out", "{dir}/r.txt"}, true, erase, "old report\n"},
        {"a read-only file is overwritten", {"-out", "{dir}/r.txt"}, true, erase, "old report\n", true},
        {"%NAME% is expanded", {"-out", "%VEXA_E2E_DIR%/r.txt"}},
        {"can't be made: fails while parsing", {"-out", unmade}, false,
         "prob opening file " + tool_path_form(unmade) + " for output, aborting\n"},
        {"a missing -server leaves no file", {"-out", "{dir}/r.txt"}, false, server_message, nullptr, false, false},
    };
    for (const file_case& c : cases) {
        fs::remove(file);
        if (c.before) std::ofstream(file) << c.before;
        if (c.read_only) fs::permissions(file, fs::perms::owner_read);
        responder server(silent(), test_loopback_address(c.what));
        strings args = args_for(c.args, c.server ? server.address() : "", dir.path.string());
        args.insert(args.end(), {"-url", "a.b", "-csv", "-timeout", "0"});
        vexa_run run = run_vexa(args);
        EXPECT_EQ(run.exit_code, c.made ? 0 : 255) << c.what;
        EXPECT_EQ(run.err, c.err) << c.what;
        EXPECT_EQ(fs::exists(file), c.made) << c.what;
        EXPECT_FALSE(fs::exists(unmade)) << c.what;
        // After a parse failure the run record goes to the standard output.
        const std::string report = c.made ? read_file(file) : run.out;
        EXPECT_TRUE(report.starts_with("vexa ver: 0.48\r\n")) << c.what;
        EXPECT_TRUE(lines_end_in_crlf(report)) << c.what;
        if (!c.made) continue;
        EXPECT_EQ(run.out, "") << c.what;
        ASSERT_EQ(server.queries().size(), 1u) << c.what;
        EXPECT_EQ(mask_date_time(report_body(report), ","),
                  expand(csv_header + "\na.b,question,timeout,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n",
                         id_of(server.queries()[0]), server.address()))
            << c.what;
    }
}

std::string digits_masked(std::string text) {
    std::replace_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }, '#');
    return text;
}

TEST(E2eRun, RunRecord) {
    struct record_case {  // date_format as strftime has it
        const char* what; strings args; const char* command; const char* date_format = "%m/%d/%Y"; bool bom = false;
    };
    const record_case cases[] = {
        {"an argument with a blank in apostrophes", {"-URL", "a b", "-timeout", "0"},
         "\"command: {bin} -URL 'a b' -timeout 0 -server {srv}\""},
        {"-pipe: the list in front", {"-pipe"}, "\"command: <filelist> ... | {bin} -pipe -server {srv}\""},
        {"-PIPE likewise", {"-PIPE"}, "\"command: <filelist> ... | {bin} -PIPE -server {srv}\""},
        {"a _pipe command: no prefix", {"-url_pipe"}, "\"command: {bin} -url_pipe -server {srv}\""},
        {"-dateformat as given", {"-url_pipe", "-dateformat", "yyyy-mm-dd"},
         "\"command: {bin} -url_pipe -dateformat yyyy-mm-dd -server {srv}\"", "%Y-%m-%d"},
        {"-bom", {"-bom", "-url_pipe"}, "\"command: {bin} -bom -url_pipe -server {srv}\"", "%m/%d/%Y", true},
    };
    char host[256] = {};
    ::gethostname(host, sizeof host - 1);
    for (const auto& c : cases) {
        responder server(silent(), test_loopback_address(c.what));
        const std::time_t before = std::time(nullptr);
        vexa_run run = run_vexa(args_for(c.args, server.address()));
        const std::time_t after = std::time(nullptr);
        EXPECT_EQ(run.exit_code, 0) << c.what;
        EXPECT_EQ(run.out.starts_with("\xEF\xBB\xBF"), c.bom) << c.what;
        const strings lines = lines_of(std::string_view(run.out).substr(c.bom ? 3 : 0));
        ASSERT_GE(lines.size(), 4u) << c.what;
        EXPECT_EQ(lines[0], "vexa ver: 0.48") << c.what;
        auto date_of = [&](std::time_t t) {
            char text[32];
            return std::string(text, std::strftime(text, sizeof text, c.date_format, std::gmtime(&t)));
        };
        const std::string date = lines[1].substr(8, date_of(before).size());
        EXPECT_TRUE(date == date_of(before) || date == date_of(after)) << c.what << ": " << lines[1];
        const std::string head = "run at: " + date + " 00:00:00 UTC; host: " + host + "; system: ";
        EXPECT_EQ(digits_masked(lines[1].substr(0, head.size())), digits_masked(head)) << c.what;
        EXPECT_EQ(lines[2], args_for({c.command}, server.address())[0]) << c.what;
        EXPECT_EQ(lines[3], "") << c.what;
    }
}

// How far a run gets decides its acts at the end. Every row asks for
// -signal and -diags: the event and the elapsed time come only past the
// parsing, the diagnostics file's first line once the parser reaches -diags.
TEST(E2eRun, HowFarARunGets) {
    enum stage { help, parse_failure, past_parsing };
    temp_dir dir;
    const struct {  // err_head is the whole text when err_tail is empty
        const char* what; strings args; bool server; int exit_code; stage reached; std::string err_head, err_tail;
    } cases[] = {
        {"no arguments at all", {}, false, 0, help, help_head, help_tail},
        {"-h", {"-h"}, true, 0, help, help_head, help_tail},
        {"-HELP behind a whole query", {"-url", "a.b", "-HELP"}, true, 0, help, help_head, help_tail},
        {"--help", {"--help"}, true, 0, help, help_head, help_tail},
        {"/? with -out", {"/?", "-out", "{dir}/h.txt"}, true, 0, help, help_head, help_tail},
        {"help and ? are words", {"-url", "a b", "help", "?"}, true, 0, past_parsing, erase, ""},
        {"-quiet", {"-url", "a.b", "-quiet"}, true, 0, past_parsing, "", ""},
        {"-profile", {"-url", "a.b", "-profile"}, true, 0, past_parsing, erase + "->", " secs\n"},
        {"nothing to do", {}, true, 255, past_parsing, help_head, help_tail + erase},
        {"a name that can't be encoded", {"-url", long_label}, true, 255, past_parsing,
         erase + "prob building dns packet... aborting\n" + erase, ""},
        {"a parse failure", {"-url", "a.b"}, false, 255, parse_failure, server_message, ""},
        {"an option not offered", {"-url", "a.b", "-sqlite", "x"}, true, 255, parse_failure,
         "This option is not offered in this build\n", ""},
    };
    const fs::path diag_file = dir.path / "d.txt";
    for (const auto& c : cases) {
        const std::string event = "vexa_e2e_" + std::to_string(::getpid()) + "_" + std::to_string(&c - cases);
        take_event(event);
        fs::remove(diag_file);
        responder server(silent(), test_loopback_address(c.what));
        strings args = args_for(c.args, c.server ? server.address() : "", dir.path.string());
        if (!args.empty()) args.insert(args.end(), {"-timeout", "0", "-signal", event, "-diags", diag_file.string()});
        vexa_run run = run_vexa(args);
        EXPECT_EQ(run.exit_code, c.exit_code) << c.what;
        EXPECT_EQ(take_event(event), c.reached == past_parsing) << c.what;
        EXPECT_EQ(!seen(server).empty(), c.reached == past_parsing && c.exit_code == 0) << c.what;
        EXPECT_FALSE(fs::exists(dir.path / "h.txt")) << c.what;
        if (c.reached == help) {
            EXPECT_EQ(run.out, "") << c.what;
            EXPECT_FALSE(fs::exists(diag_file)) << c.what;
            EXPECT_NE(run.err.find("\n vexa -url_pipe -server <dns srv ip>  \n"), std::string::npos) << c.what;
        } else {
            if (c.reached == parse_failure) {
                EXPECT_EQ(report_body(run.out), "") << c.what << ": the record alone";
            }
            // The command line, with double quotes; past the parsing "->N secs" behind it.
            std::string command = std::string("->") + VEXA_BINARY;
            for (const std::string& arg : args) command += " " + (arg == "a b" ? "\"a b\"" : arg);
            const std::string diags = read_file(diag_file);
            ASSERT_TRUE(diags.starts_with(command)) << c.what << ": " << diags;
            const std::size_t line_end = diags.find('\n', command.size());
            ASSERT_LE(line_end - command.size(), 1u) << c.what << ": CR LF or LF";
            const std::string elapsed = diags.substr(line_end + 1);
            EXPECT_EQ(elapsed.starts_with("->") && elapsed.ends_with(" secs"), c.reached == past_parsing) << c.what;
        }
        if (c.err_tail.empty()) {
            EXPECT_EQ(run.err, c.err_head) << c.what;
            continue;
        }
        ASSERT_GE(run.err.size(), c.err_head.size() + c.err_tail.size()) << c.what;
        EXPECT_TRUE(run.err.starts_with(c.err_head) && run.err.ends_with(c.err_tail)) << c.what;
        if (c.err_tail != " secs\n") continue;
        const std::string seconds = run.err.substr(c.err_head.size(), run.err.size() - c.err_head.size() - 6);
        EXPECT_TRUE(!seconds.empty() && seconds.find_first_not_of("0123456789.e-") == std::string::npos) << seconds;
    }
}

// The queries a walk gives: the files of a directory in the reverse of the
// system's listing, then its subdirectories, also reversed, each whole.
void walk_order(const fs::path& dir, int levels, const std::string& ending, const std::string& type,
                std::string& out) {
    std::vector<fs::directory_entry> items{fs::directory_iterator(dir), fs::directory_iterator()};
    std::reverse(items.begin(), items.end());
    for (const auto& item : items) {
        const std::string shown = tool_path_form(item.path().string());
        if (!item.is_directory() && shown.ends_with(ending)) out += (out.empty() ? "" : " ") + shown + "/" + type;
    }
    for (const auto& item : items)
        if (levels > 0 && item.is_directory()) walk_order(item.path(), levels - 1, ending, type, out);
}

TEST(E2eRun, EnumdirQueriesTheFilesOfAWalk) {
    temp_dir dir;
    const fs::path root = dir.path / "root";
    for (const char* file : {"a.txt", "b.log", "c.txt", "sub1/d.txt", "sub1/deeper/e.txt", "sub2/g.log"}) {
        fs::create_directories((root / file).parent_path());
        std::ofstream(root / file) << "x";
    }
    // levels -1: the standard input is read instead.
    const struct { const char* what; strings args; int levels; const char* ending; const char* type; } cases[] = {
        {"default depth: the root's files", {"-url_pipe", "-enumdir", "{dir}"}, 0, "", "1"},
        {"-num_subdirs 1, type of -mx_pipe", {"-enumdir", "{dir}", "-num_subdirs", "1", "-mx_pipe"}, 1, "", "15"},
        {"-filter *.txt, every depth", {"-enumdir", "{dir}\\", "-num_subdirs", "9", "-filter", "*.txt"}, 9, ".txt",
         "1"},
        {"-pipe wins over -enumdir", {"-pipe", "-enumdir", "{dir}"}, -1, "", "1"},
    };
    for (const auto& c : cases) {
        responder server(silent(), test_loopback_address(c.what));
        strings args = args_for(c.args, server.address(), tool_path_form(root.string()));
        args.insert(args.end(), {"-timeout", "0"});
        vexa_run run = run_vexa(args, "a.b\n");
        std::string expected = c.levels < 0 ? "a.b/1" : "";
        if (c.levels >= 0) walk_order(root, c.levels, c.ending, c.type, expected);
        EXPECT_EQ(run.exit_code, 0) << c.what;
        EXPECT_EQ(seen(server), expected) << c.what;
    }
}

}  // namespace

// Whole runs of the real binary around its queries: lists, options, frame, files, help, the end of a run.
#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <regex>
#include <sys/wait.h>
#include <unistd.h>

#include "support/e2e.h"

namespace {

using namespace test_support;
namespace fs = std::filesystem;
using clock_type = std::chrono::steady_clock;
using strings = std::vector<std::string>;

const datagram one_a_reply = join({{0x81, 0x80, 0, 1, 0, 1, 0, 0, 0, 0},  // from the flags on: QR RD RA; QD 1, AN 1
                                   {1, 'a', 1, 'b', 0, 0, 1, 0, 1},       // a.b. A IN
                                   {0xC0, 12, 0, 1, 0, 1, 0, 0, 1, 0x2C, 0, 4, 1, 2, 3, 4}});  // a.b. A 300 1.2.3.4
const std::string erase = "\x1b[2K\r    \r";
const std::string server_message =
    "error: need to specify a DNS server to query using the format: -server <ipv4 addr>\n";
const std::string help_head =
    "-----------------------------------------------------------------------------\n\n"
    "vexa ver: 0.48\n\nusage:\n \n vexa -url <domain to lookup> -server <dns srv ip>\n";
const std::string help_tail =
    "example of using std input and redirecting the output to a file\n"
    " type hosts.txt | vexa -url_pipe -server 8.8.8.8 > results.txt\n\n";
const std::string csv_header = "query,comment,status,id,DNSserv,date, time-UTC,type,tname,class,ttl,size,data";
const std::string long_label = std::string(256, 'x') + ".b";  // one label too long to encode

// "-server <srv>" in place of "{srv}", or behind the rest (none when `srv` is empty); then `more`.
strings args_for(strings args, const std::string& srv, const strings& more = {}) {
    const auto named = std::find(args.begin(), args.end(), "{srv}");
    if (named != args.end()) *named = srv;
    if (named == args.end() && !srv.empty()) args.insert(args.end(), {"-server", srv});
    args.insert(args.end(), more.begin(), more.end());
    return args;
}

// `pattern` with at most one '*', which stands for any text.
bool matches(const std::string& text, const std::string& pattern) {
    const std::size_t star = std::min(pattern.find('*'), pattern.size());
    return star == pattern.size() ? text == pattern
                                  : text.size() >= pattern.size() && text.starts_with(pattern.substr(0, star)) &&
                                        text.ends_with(pattern.substr(star + 1));
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

std::string backslashed(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

// Reads `fd` until `text` has come (or, for an empty `text`, the end), waiting at most 5 s for each piece.
bool read_until(int fd, std::string& got, const std::string& text) {
    char chunk[4096];
    for (pollfd p{fd, POLLIN, 0}; text.empty() || got.find(text) == std::string::npos;) {
        const ssize_t n = ::poll(&p, 1, 5000) == 1 ? ::read(fd, chunk, sizeof chunk) : -1;
        if (n <= 0) return n == 0 && text.empty();
        got.append(chunk, static_cast<std::size_t>(n));
    }
    return true;
}

TEST(E2eRun, ListReportsEachLineBeforeReadingTheNext) {
    // a.b gets an answer; c.d an empty datagram, which is a time-out.
    responder server([](const datagram& q) {
        return std::vector<datagram>{q.size() > 13 && q[13] == 'a' ? with_id(q, one_a_reply) : datagram{}};
    });
    std::vector<std::string> words = command_for({"-url_pipe", "-csv", "-server", server.address()});
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    int in[2], out[2];
    ASSERT_EQ(::pipe2(in, O_CLOEXEC) | ::pipe2(out, O_CLOEXEC), 0);
    const pid_t pid = ::fork();
    if (pid == 0) {  // only async-signal-safe calls here; the erase sequence goes to the test's stderr
        ::dup2(in[0], 0), ::dup2(out[1], 1);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    ::signal(SIGPIPE, SIG_IGN);
    ::close(in[0]), ::close(out[1]);
    ASSERT_GT(pid, 0);
    std::string got;
    EXPECT_EQ(::write(in[1], "a.b\n", 4), 4);
    EXPECT_TRUE(read_until(out[0], got, "answer,success")) << got;
    EXPECT_EQ(seen(server), "a.b/1") << "the second line isn't written yet";
    EXPECT_EQ(::write(in[1], "c.d\n", 4), 4);
    ::close(in[1]);
    const bool ended = read_until(out[0], got, "");
    if (!ended) ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ::close(out[0]);
    EXPECT_TRUE(ended && WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(seen(server), "a.b/1 c.d/1");
    EXPECT_EQ(count_of(got, csv_header), 1u) << "one header line per list";
}

// Runs against a silent server: what the server saw, the report's first line.
TEST(E2eRun, WhatTheCommandLineAsks) {
    struct run_case {  // first_line: {srvhdr} as for expand()
        const char* what;
        strings args;
        std::string input;
        const char* seen;
        std::string first_line = csv_header, err = erase;
    };
    const run_case cases[] = {
        {"empty input: the run record only", {"-url_pipe"}, "", ""},
        {"blank and CR/LF-only lines: no query, no delay", {"-url_pipe", "-delay", "1"}, "\n\r\n\r\r\n\n\r", ""},
        {"CR LF, empty line, LF; no end", {"-url_pipe", "-csv"}, "a.b\r\n\r\nc.d\nb.a", "a.b/1 c.d/1 b.a/1"},
        {"a ^Z byte is a byte of a name", {"-url_pipe", "-csv"}, "a\x1a.b\r\n\x1a\r\nc.d\n", "a\x1a.b/1 \x1a/1 c.d/1"},
        {"a line of blanks, comment-like lines: names", {"-url_pipe", "-csv"}, "   \n#x\n;y\n", "   /1 #x/1 ;y/1"},
        {"a name that can't be encoded: no row", {"-url_pipe", "-csv"}, long_label + "\na.b\n", "a.b/1"},
        {"first -url counts", {"-url", "a.b", "-url", "c.d", "-csv"}, "", "a.b/1"},
        {"common options take words first: -server -csv", {"-url", "a.b", "-server", "-csv", "{srv}"}, "", "a.b/1"},
        {"-ip_pipe -url_pipe asks PTR", {"-ip_pipe", "-url_pipe", "-csv"}, "1.2.3.4\n", "4.3.2.1.in-addr.arpa/12"},
        {"-pipe -ip: PTR for each line", {"-pipe", "-ip", "1.2.3.4", "-csv"}, "5.6.7.8\n", "8.7.6.5.in-addr.arpa/12"},
        {"-csv -pair_datetime is padded",
         {"-csv", "-pair_datetime", "-url", "a.b"},
         "",
         "a.b/1",
         "query                                   ,comment  ,status ,id  ,{srvhdr},date      , time-UTC    "
         ",type,tname ,class,ttl   ,size,data"},
        {"bad -dateformat",
         {"-csv", "-dateformat", "dd/mm/y", "-url", "a.b"},
         "",
         "a.b/1",
         csv_header,
         "invalid dd/mm/y, using default format\n" + erase},
        {"-filter: case-blind, the line queried as read",
         {"-url_pipe", "-csv", "-filter", "xnode.a|*example*"},
         "Node1.Example.net\nb.exampl\nxnode.a\n",
         "Node1.Example.net/1 xnode.a/1"},
    };
    for (const run_case& c : cases) {
        responder server(silent(), test_loopback_address(c.what));
        const strings args = args_for(c.args, server.address(), {"-timeout", "0"});
        const auto start = clock_type::now();
        vexa_run run = run_vexa(args, c.input);
        if (!*c.seen) { EXPECT_LT(clock_type::now() - start, std::chrono::milliseconds(900)) << c.what; }  // no delay
        EXPECT_EQ(run.exit_code, 0) << c.what;
        EXPECT_EQ(run.err, c.err) << c.what;
        EXPECT_EQ(seen(server), c.seen) << c.what;
        const std::string body(report_body(run.out)), first_line = expand(c.first_line, 0, server.address());
        EXPECT_EQ(count_of(body, "timeout"), server.queries().size()) << c.what << ": one row for each query";
        EXPECT_TRUE(*c.seen ? body.starts_with(first_line) && count_of(body, first_line) == 1 : body.empty()) << c.what;
    }
}

TEST(E2eRun, XmlFrame) {
    const struct {
        const char* what;
        strings args;
        const char* input;
        std::size_t entries;
        bool foot;
    } cases[] = {
        {"one query, -verbose adds nothing", {"-url", "a.b", "-verbose"}, "", 1, true},
        {"a list of two", {"-url_pipe"}, "a.b\nc.d\n", 2, true},
        {"an empty list: head and foot", {"-url_pipe"}, "", 0, true},
        {"a name that can't be encoded: no foot", {"-url", long_label}, "", 0, false},
    };
    for (const auto& c : cases) {
        responder server(silent(), test_loopback_address(c.what));
        vexa_run run = run_vexa(args_for(c.args, server.address(), {"-xml", "-timeout", "0"}), c.input);
        EXPECT_EQ(run.exit_code, c.foot ? 0 : 255) << c.what;
        std::string body(report_body(run.out));  // each entry becomes "E"
        for (std::size_t at; (at = body.find("<data_entry>")) != std::string::npos;)
            body.replace(at, body.find("</data_entry>\r\n", at) + 13 - at, "E");
        std::string expected =
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n\r\n<logdata tool=\"vexa ver: 0.48\" "
            "cmdline=\"" +
            program_seen() + "\">\r\n";
        for (std::size_t i = 0; i < c.entries; ++i) expected += "E\r\n";
        EXPECT_EQ(body, expected + (c.foot ? "</logdata>\r\n" : "")) << c.what;
    }
}

TEST(E2eRun, ResultsFile) {
    temp_dir dir;
    ::setenv("VEXA_E2E_DIR", dir.root.c_str(), 1);
    const std::string file = dir / "r.txt", unmade = dir / "missing/r.txt";
    const struct {
        const char* what;
        strings args;
        bool made;
        std::string err;
        bool old;
        bool server;
    } cases[] = {
        {"a new file", {"-out", file}, true, erase, false, true},
        {"a read-only file is replaced", {"-outfile", file}, true, erase, true, true},
        {"%NAME% is expanded", {"-out", "%VEXA_E2E_DIR%/r.txt"}, true, erase, false, true},
        {"can't be made: fails while parsing",
         {"-out", unmade},
         false,
         "prob opening file " + backslashed(unmade) + " for output, aborting\n",
         false,
         true},
        {"a missing -server leaves no file", {"-out", file}, false, server_message, false, false},
    };
    for (const auto& c : cases) {
        fs::remove(file);
        if (c.old) dir.put("r.txt", "an older and longer report\n"), fs::permissions(file, fs::perms::owner_read);
        responder server(silent(), test_loopback_address(c.what));
        const strings more = {"-url", "a.b", "-csv", "-timeout", "0"};
        vexa_run run = run_vexa(args_for(c.args, c.server ? server.address() : "", more));
        EXPECT_EQ(run.exit_code, c.made ? 0 : 255) << c.what;
        EXPECT_EQ(run.err, c.err) << c.what;
        EXPECT_EQ(fs::exists(file), c.made) << c.what;
        if (c.made) { EXPECT_NE(fs::status(file).permissions() & fs::perms::owner_write, fs::perms::none) << c.what; }
        const std::string report = c.made ? read_file(file) : run.out;  // after a parse failure: the run record
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

// -append puts the whole report, run record included, behind what the file
// holds; the file is still tried while the options are read, and a file that
// wasn't there is not left behind when the run ends in the parser.
TEST(E2eRun, AppendKeepsWhatTheFileHolds) {
    temp_dir dir;
    const std::string file = dir / "r.txt", older = "an older report\r\n";
    const struct {
        const char* what;
        const char* before;
        bool server;
        strings args;
        bool made;
    } cases[] = {
        {"behind a file's content", older.c_str(), true, {"-out", file, "-append"}, true},
        {"a read-only file too", older.c_str(), true, {"-APPEND", "-outfile", file}, true},
        {"a missing file is made", nullptr, true, {"-append", "-out", file}, true},
        {"a missing -server leaves no new file", nullptr, false, {"-out", file, "-append"}, false},
        {"a missing -server leaves the content", older.c_str(), false, {"-out", file, "-append"}, false},
    };
    for (const auto& c : cases) {
        fs::remove(file);
        if (c.before) dir.put("r.txt", c.before), fs::permissions(file, fs::perms::owner_read);
        responder server(silent(), test_loopback_address(c.what));
        vexa_run run =
            run_vexa(args_for(c.args, c.server ? server.address() : "", {"-url", "a.b", "-csv", "-timeout", "0"}));
        EXPECT_EQ(run.exit_code, c.made ? 0 : 255) << c.what;
        const std::string before = c.before ? c.before : "";
        ASSERT_EQ(fs::exists(file), c.made || c.before) << c.what;
        if (!c.made) {
            EXPECT_EQ(read_file(file), before) << c.what;
            continue;
        }
        const std::string content = read_file(file);
        ASSERT_TRUE(content.starts_with(before)) << c.what << ": " << content;
        const std::string report = content.substr(before.size());
        EXPECT_TRUE(report.starts_with("vexa ver: 0.48\r\n")) << c.what;
        EXPECT_EQ(mask_date_time(report_body(report), ","),
                  expand(csv_header + "\na.b,question,timeout,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n",
                         id_of(server.queries().at(0)), server.address()))
            << c.what;
    }
}

TEST(E2eRun, RunRecord) {
    // command: what stands in front of the program's name, and behind it.
    const struct {
        const char* what;
        strings args;
        const char *before, *after;
        const char* date_format;
    } cases[] = {
        {"a blank in apostrophes", {"-URL", "a b", "-timeout", "0"}, "", " -URL 'a b' -timeout 0", "%m/%d/%Y"},
        {"-PIPE: the list in front", {"-PIPE"}, "<filelist> ... | ", " -PIPE", "%m/%d/%Y"},
        {"-dateformat, -bom",
         {"-bom", "-url_pipe", "-dateformat", "yyyy-mm-dd"},
         "",
         " -bom -url_pipe -dateformat yyyy-mm-dd",
         "%Y-%m-%d"},
    };
    char name[256] = {};
    ::gethostname(name, sizeof name - 1);
    std::string host = name;  // Windows tells the computer's name in upper case
    if (target().windows) std::transform(host.begin(), host.end(), host.begin(), ::toupper);
    // The system fields: name, "major.minor.-", "major.minor.build", word size; then where the program lies.
    const std::regex system(std::string(target().windows ? "Windows" : "Linux") +
                            ";\\d+\\.\\d+\\.-;\\d+\\.\\d+\\.\\d+;(32|64)(; (<~>)?(:=)?)?");
    for (const auto& c : cases) {
        responder server(silent(), test_loopback_address(c.what));
        const auto head_at = [&, bom = c.args[0] == "-bom"](std::time_t t) {
            char date[32];
            std::strftime(date, sizeof date, c.date_format, std::gmtime(&t));
            return std::string(bom ? "\xEF\xBB\xBF" : "") + "vexa ver: 0.48\r\nrun at: " + date + " ";
        };
        const std::time_t before = std::time(nullptr);
        vexa_run run = run_vexa(args_for(c.args, server.address()));
        const std::string head = head_at(run.out.starts_with(head_at(before)) ? before : std::time(nullptr));
        std::string line = run.out.substr(0, run.out.find("; system: ") + 10);
        for (std::size_t i = head.size(); i < std::min(line.size(), head.size() + 8); ++i)  // the time of day
            if (line[i] >= '0' && line[i] <= '9') line[i] = '#';
        EXPECT_EQ(line, head + "##:##:## UTC; host: " + host + "; system: ") << c.what;
        const std::size_t end = run.out.find("\r\n", line.size());
        const std::string fields = run.out.substr(line.size(), end - std::min(end, line.size()));
        EXPECT_TRUE(std::regex_match(fields, system)) << c.what << ": " << fields;
        const std::string command =
            "\r\n\"command: " + std::string(c.before) + program_seen() + c.after + " -server " + server.address();
        EXPECT_NE(run.out.find(command + "\"\r\n\r\n"), std::string::npos) << c.what << ": " << run.out;
    }
}

// How far a run gets decides its acts at the end. Every row asks for -signal
// and -diags: the event and the elapsed time come only past the parsing, the
// diagnostics file's command line once the parser reaches -diags.
TEST(E2eRun, HowFarARunGets) {
    enum stage { help, parse_failure, past_parsing };
    temp_dir dir;
    const std::string help_text = help_head + "*" + help_tail, diag_file = dir / "d.txt";
    const struct {
        const char* what;
        strings args;
        bool server;
        int exit_code;
        stage reached;
        std::string err;
    } cases[] = {
        {"no arguments at all", {}, false, 0, help, help_text},
        {"-HELP behind a whole query", {"-url", "a.b", "-HELP"}, true, 0, help, help_text},
        {"/? with -out", {"/?", "-out", dir / "h.txt"}, true, 0, help, help_text},
        {"help and ? are words", {"-url", "a b", "help", "?"}, true, 0, past_parsing, erase},
        {"-quiet", {"-url", "a.b", "-quiet"}, true, 0, past_parsing, ""},
        {"-profile", {"-url", "a.b", "-profile"}, true, 0, past_parsing, erase + "->* secs\n"},
        {"nothing to do", {}, true, 255, past_parsing, help_text + erase},
        {"a name that can't be encoded",
         {"-url", long_label},
         true,
         255,
         past_parsing,
         erase + "prob building dns packet... aborting\n" + erase},
        {"a parse failure", {"-url", "a.b"}, false, 255, parse_failure, server_message},
    };
    for (const auto& c : cases) {
        const std::string event = "vexa_e2e_" + std::to_string(::getpid()) + "_" + std::to_string(&c - cases);
        event_watch watch(event);
        fs::remove(diag_file);
        responder server(silent(), test_loopback_address(c.what));
        strings args = args_for(c.args, c.server ? server.address() : "");
        if (!args.empty()) args.insert(args.end(), {"-timeout", "0", "-signal", event, "-diags", diag_file});
        vexa_run run = run_vexa(args);
        EXPECT_EQ(run.exit_code, c.exit_code) << c.what;
        EXPECT_EQ(watch.was_set(), c.reached == past_parsing) << c.what;
        EXPECT_EQ(!seen(server).empty(), c.reached == past_parsing && c.exit_code == 0) << c.what;
        EXPECT_FALSE(fs::exists(dir / "h.txt")) << c.what;
        const std::string diags = read_file(diag_file);
        EXPECT_EQ(diags.starts_with("->" + program_seen() + " "), c.reached != help) << c.what << ": " << diags;
        EXPECT_EQ(diags.find("\r\r"), std::string::npos) << c.what << ": " << diags;
        EXPECT_EQ(diags.ends_with(" secs"), c.reached == past_parsing) << c.what << ": " << diags;
        if (c.reached != past_parsing) { EXPECT_EQ(report_body(run.out), "") << c.what << ": the record alone"; }
        EXPECT_TRUE(matches(run.err, c.err)) << c.what << ": " << run.err;
    }
}

// The queries of a walk: the files of a directory in the reverse of the
// system's listing, then its subdirectories, also reversed, each whole. For
// vexa.exe the listing is Windows's: sorted by name, as both Wine and NTFS
// give it for these lower-case names. Files here have no named streams, so
// none is queried (Wine has none at all).
void walk_order(const fs::path& dir, int levels, const std::string& ending, const std::string& type, std::string& out) {
    std::vector<fs::directory_entry> items{fs::directory_iterator(dir), fs::directory_iterator()};
    if (target().windows) std::sort(items.begin(), items.end());
    std::reverse(items.begin(), items.end());
    for (const auto& item : items)
        if (!item.is_directory() && item.path().string().ends_with(ending))
            out += (out.empty() ? "" : " ") + backslashed(item.path().string()) + "/" + type;
    for (const auto& item : items)
        if (levels > 0 && item.is_directory()) walk_order(item.path(), levels - 1, ending, type, out);
}

TEST(E2eRun, EnumdirQueriesTheFilesOfAWalk) {
    temp_dir dir;
    for (const char* file : {"a.txt", "b.log", "c.txt", "sub1/d.txt", "sub1/x/e.txt", "sub2/g.log"}) dir.put(file, "x");
    const std::string root = backslashed(dir.root.string());
    const struct {
        const char* what;
        strings args;
        int levels;
        const char* ending;
        const char* type;
    } cases[] = {
        {"default depth: the root's files", {"-url_pipe", "-enumdir", root}, 0, "", "1"},
        {"-num_subdirs 1, type of -mx_pipe", {"-enumdir", root, "-num_subdirs", "1", "-mx_pipe"}, 1, "", "15"},
        {"-filter, every depth", {"-enumdir", root + "\\", "-num_subdirs", "9", "-filter", "*.txt"}, 9, ".txt", "1"},
        {"-pipe wins over -enumdir", {"-pipe", "-enumdir", root}, -1, "", "1"},  // the standard input is read
    };
    for (const auto& c : cases) {
        responder server(silent(), test_loopback_address(c.what));
        vexa_run run = run_vexa(args_for(c.args, server.address(), {"-timeout", "0"}), "a.b\n");
        std::string expected = c.levels < 0 ? "a.b/1" : "";
        if (c.levels >= 0) walk_order(dir.root, c.levels, c.ending, c.type, expected);
        EXPECT_EQ(seen(server), expected) << c.what << ": " << run.err;
    }
}

}  // namespace

// The real binary end to end, against a scripted server on a loopback address of its own: one query with
// its dumps, tries and statuses; lists, options, the frame, files, help and the end of a run. The bytes of
// each command's query are the query builder's and the interop tests'.
#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <regex>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "support/tool.h"

namespace {

using namespace test_support;
namespace fs = std::filesystem;
using strings = std::vector<std::string>;

const std::string erase = "\x1b[2K\r    \r";
const std::string server_message =
    "error: need to specify a DNS server to query using the format: -server <ipv4 addr>\n";
const std::string csv_header = "query,comment,status,id,DNSserv,date, time-UTC,type,tname,class,ttl,size,data";
const datagram& one_a = one_a_reply;
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
    if (star == pattern.size()) return text == pattern;
    return text.size() >= pattern.size() && text.starts_with(pattern.substr(0, star)) &&
           text.ends_with(pattern.substr(star + 1));
}

std::size_t count_of(const std::string& text, const std::string& part) {
    std::size_t n = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++n;
    return n;
}

std::vector<std::string> words(std::string_view text) {
    std::vector<std::string> out;
    for (std::size_t at; !text.empty(); text.remove_prefix(std::min(text.size(), at + 1)))
        if ((at = std::min(text.find(' '), text.size())) > 0) out.emplace_back(text.substr(0, at));
    return out;
}

// The "comment status" pairs of the rows of a -csv report, joined by "|".
std::string statuses(std::string_view body) {
    std::string out;
    for (const std::string& line : lines_of(body))
        if (const auto cells = cells_of(line, ","); !cells.empty())
            out.append(out.empty() ? "" : "|").append(cells[1]).append(" ").append(cells[2]);
    return out;
}

std::string backslashed(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

TEST(E2eRun, ListReportsEachLineBeforeReadingTheNext) {
    // a.b gets an answer; c.d an empty datagram, which is a time-out.
    responder server([](const datagram& q) {
        return std::vector<datagram>{q.size() > 13 && q[13] == 'a' ? with_id(q, one_a_reply) : datagram{}};
    });
    int in[2], out[2];
    ASSERT_EQ(::pipe2(in, O_CLOEXEC) | ::pipe2(out, O_CLOEXEC), 0);
    const int fds[3] = {in[0], out[1], -1};  // the erase sequence goes to the test's stderr
    const int pid = spawn(command_for({"-url_pipe", "-csv", "-server", server.address()}), fds);
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
    int status = -1;
    ::waitpid(pid, &status, 0);
    ::close(out[0]);
    EXPECT_TRUE(ended);
    EXPECT_EQ(status, 0) << "exit code 0";
    EXPECT_EQ(seen(server), "a.b/1 c.d/1");
}

// Runs against a silent server: what the server saw, the report's first line.
TEST(E2eRun, WhatEachCommandLineQueries) {
    temp_dir dir;  // a walk: one file to a directory, so that the order of a listing does not matter
    for (const char* file : {"a.txt", "sub/b.log", "sub/x/c.txt"}) dir.put(file, "x");
    const std::string root = backslashed(dir.root.string());
    struct run_case {  // first_line: {srvhdr} as for expand()
        const char* what;
        strings args;
        std::string input, seen;
        std::string first_line = csv_header, err = erase;
    };
    const run_case cases[] = {
        {"empty input: the run record only", {"-url_pipe"}, "", ""},
        // A wait here would outlast the run's time limit.
        {"blank and CR/LF-only lines: no query, no delay", {"-url_pipe", "-delay", "3600"}, "\n\r\n\r\r\n\n\r", ""},
        // clang-format off
        {"a ^Z byte is a byte of a name, not the end", {"-url_pipe", "-csv"}, "a\x1a.b\r\n\x1a\r\nc.d\n", "a\x1a.b/1 \x1a/1 c.d/1"},
        {"a name that can't be encoded: no row", {"-url_pipe", "-csv"}, long_label + "\na.b\n", "a.b/1"},
        {"UTF-8 arguments go out as their bytes", {"-url", "caf\xC3\xA9.b", "-csv"}, "", "caf\xC3\xA9.b/1"},
        {"first -url counts", {"-url", "a.b", "-url", "c.d", "-csv"}, "", "a.b/1"},
        {"common options take words first: -server -csv", {"-url", "a.b", "-server", "-csv", "{srv}"}, "", "a.b/1"},
        {"-ip_pipe -url_pipe asks PTR", {"-ip_pipe", "-url_pipe", "-csv"}, "1.2.3.4\n", "4.3.2.1.in-addr.arpa/12"},
        {"-pipe -ip: PTR for each line", {"-pipe", "-ip", "1.2.3.4", "-csv"}, "5.6.7.8\n", "8.7.6.5.in-addr.arpa/12"},
        {"-csv -pair_datetime is padded", {"-csv", "-pair_datetime", "-url", "a.b"}, "", "a.b/1", "query                                   ,comment  ,status ,id  ,{srvhdr},date      , time-UTC    " ",type,tname ,class,ttl   ,size,data"},
        {"bad -dateformat", {"-csv", "-dateformat", "dd/mm/y", "-url", "a.b"}, "", "a.b/1", csv_header, "invalid dd/mm/y, using default format\n" + erase},
        {"-enumdir, -num_subdirs, the type of -mx_pipe", {"-enumdir", root, "-num_subdirs", "1", "-mx_pipe", "-csv"}, "", root + "\\a.txt/15 " + root + "\\sub\\b.log/15"},
        {"-enumdir: \\*\\ is each directory there", {"-url_pipe", "-enumdir", root + "\\*\\", "-csv"}, "", root + "\\sub\\b.log/1"},
        {"-pipe wins over -enumdir", {"-pipe", "-enumdir", root, "-csv"}, "a.b\n", "a.b/1"},
        {"-filter: case-blind, the line queried as read", {"-url_pipe", "-csv", "-filter", "xnode.a|*example*"}, "Node1.Example.net\nb.exampl\nxnode.a\n", "Node1.Example.net/1 xnode.a/1"},
        // clang-format on
    };
    for (const run_case& c : cases) {
        responder server(silent());
        vexa_run run = run_vexa(args_for(c.args, server.address(), {"-timeout", "0"}), c.input);
        EXPECT_EQ(run.exit_code, 0) << c.what;
        EXPECT_EQ(run.err, c.err) << c.what;
        EXPECT_EQ(seen(server), c.seen) << c.what;
        const std::string body(report_body(run.out)), first_line = expand(c.first_line, 0, server.address());
        EXPECT_EQ(count_of(body, "timeout"), server.queries().size()) << c.what << ": one row for each query";
        if (c.seen.empty()) {
            EXPECT_EQ(body, "") << c.what;
            continue;
        }
        EXPECT_TRUE(body.starts_with(first_line)) << c.what << ": " << body;
        EXPECT_EQ(count_of(body, first_line), 1u) << c.what << ": one header line";
    }
}

TEST(E2eRun, XmlFrameAroundTheEntries) {
    const std::tuple<const char*, strings, const char*, std::size_t, bool> cases[] = {
        // input, entries, a foot
        {"one query, -verbose adds nothing", {"-url", "a.b", "-verbose"}, "", 1, true},
        {"a list of two", {"-url_pipe"}, "a.b\nc.d\n", 2, true},
        {"an empty list: head and foot", {"-url_pipe"}, "", 0, true},
        {"a name that can't be encoded: no foot", {"-url", long_label}, "", 0, false},
    };
    for (const auto& [what, args, input, entries, foot] : cases) {
        responder server(silent());
        vexa_run run = run_vexa(args_for(args, server.address(), {"-xml", "-timeout", "0"}), input);
        EXPECT_EQ(run.exit_code, foot ? 0 : 255) << what;
        std::string body(report_body(run.out));  // each entry becomes "E"
        for (std::size_t at; (at = body.find("<data_entry>")) != std::string::npos;)
            body.replace(at, body.find("</data_entry>\r\n", at) + 13 - at, "E");
        std::string expected =
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n\r\n<logdata tool=\"vexa ver: 0.48\" cmdline=\"" +
            program_seen() + "\">\r\n";
        for (std::size_t i = 0; i < entries; ++i) expected += "E\r\n";
        EXPECT_EQ(body, expected + (foot ? "</logdata>\r\n" : "")) << what;
    }
}

// The results file is tried while the options are read; it is made new or
// replaced, a read-only one too, or -append puts the whole report, run record
// included, behind what it holds. A run that ends in the parser leaves no new
// file and the old content as it was, its record on standard output.
TEST(E2eRun, ResultsFileMadeReplacedOrAppendedTo) {
    temp_dir dir;
    ::setenv("VEXA_E2E_DIR", dir.root.c_str(), 1);
    const std::string file = dir / "r.txt", unmade = dir / "missing/r.txt", older = "an older and longer report\r\n";
    const struct {
        const char* what;
        strings args;
        bool before, append, server;  // before: the file holds `older`, read-only
        std::string err = erase;      // erase: the report goes to the file
    } cases[] = {
        // clang-format off
        {"a new file", {"-out", file}, false, false, true},
        {"a read-only file is replaced", {"-outfile", file}, true, false, true},
        {"%NAME% is expanded", {"-out", "%VEXA_E2E_DIR%/r.txt"}, false, false, true},
        {"-append: behind a read-only file's content", {"-out", file, "-APPEND"}, true, true, true},
        {"-append: a missing file is made", {"-append", "-out", file}, false, true, true},
        {"can't be made", {"-out", unmade}, false, false, true, "prob opening file " + backslashed(unmade) + " for output, aborting\n"},
        {"a missing -server leaves no file", {"-out", file}, false, false, false, server_message},
        {"a missing -server leaves no new file to append to", {"-out", file, "-append"}, false, true, false, server_message},
        {"a missing -server leaves the content", {"-out", file, "-append"}, true, true, false, server_message},
        // clang-format on
    };
    for (const auto& c : cases) {
        fs::remove(file);
        if (c.before) dir.put("r.txt", older), fs::permissions(file, fs::perms::owner_read);
        responder server(silent());
        vexa_run run =
            run_vexa(args_for(c.args, c.server ? server.address() : "", {"-url", "a.b", "-csv", "-timeout", "0"}));
        const bool made = c.err == erase;
        EXPECT_EQ(run.exit_code, made ? 0 : 255) << c.what;
        EXPECT_EQ(run.err, c.err) << c.what;
        ASSERT_EQ(fs::exists(file), made || c.before) << c.what;
        const std::string content = read_file(file), kept = c.before && (c.append || !made) ? older : "";
        ASSERT_TRUE(content.starts_with(kept)) << c.what << ": " << content;
        const std::string report = made ? content.substr(kept.size()) : run.out;
        EXPECT_TRUE(report.starts_with("vexa ver: 0.48\r\n")) << c.what;
        EXPECT_TRUE(lines_end_in_crlf(report)) << c.what;
        EXPECT_EQ(made ? run.out.size() : content.size(), made ? 0 : kept.size()) << c.what << ": nothing elsewhere";
        if (!made) continue;
        EXPECT_NE(fs::status(file).permissions() & fs::perms::owner_write, fs::perms::none) << c.what;
        ASSERT_EQ(server.queries().size(), 1u) << c.what;
        EXPECT_EQ(mask_date_time(report_body(report), ","),
                  expand(csv_header + "\na.b,question,timeout,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n",
                         id_of(server.queries()[0]), server.address()))
            << c.what;
    }
}

TEST(E2eRun, RunRecordHeadsTheReport) {
    // The command line: what stands in front of the program's name, and behind it; the date's format.
    const std::tuple<const char*, strings, const char*, const char*, const char*> cases[] = {
        // clang-format off
        {"a blank in apostrophes", {"-URL", "a b", "-timeout", "0"}, "", " -URL 'a b' -timeout 0", "%m/%d/%Y"},
        {"-PIPE: the list in front", {"-PIPE"}, "<filelist> ... | ", " -PIPE", "%m/%d/%Y"},
        {"-dateformat, -bom", {"-bom", "-url_pipe", "-dateformat", "yyyy-mm-dd"}, "", " -bom -url_pipe -dateformat yyyy-mm-dd", "%Y-%m-%d"},
        // clang-format on
    };
    char name[256] = {};
    ::gethostname(name, sizeof name - 1);
    std::string host = name;  // Windows tells the computer's name in upper case
    if (target().windows) std::transform(host.begin(), host.end(), host.begin(), ::toupper);
    // The system fields: name, "major.minor.-", "major.minor.build", word size; then where the program lies.
    const std::regex system(std::string(target().windows ? "Windows" : "Linux") +
                            ";\\d+\\.\\d+\\.-;\\d+\\.\\d+\\.\\d+;(32|64)(; (<~>)?(:=)?)?");
    for (const auto& [what, args, before_name, after_name, date_format] : cases) {
        responder server(silent());
        const auto head_at = [bom = args[0] == "-bom", format = date_format](std::time_t t) {
            char date[32];
            std::strftime(date, sizeof date, format, std::gmtime(&t));
            return std::string(bom ? "\xEF\xBB\xBF" : "") + "vexa ver: 0.48\r\nrun at: " + date + " ";
        };
        const std::time_t before = std::time(nullptr);
        vexa_run run = run_vexa(args_for(args, server.address()));
        // The run may have started on the day before the test's clock reads again.
        const std::string head = head_at(run.out.starts_with(head_at(before)) ? before : std::time(nullptr));
        std::string line = run.out.substr(0, run.out.find("; system: ") + 10);
        for (std::size_t i = head.size(); i < std::min(line.size(), head.size() + 8); ++i)  // the time of day
            if (line[i] >= '0' && line[i] <= '9') line[i] = '#';
        EXPECT_EQ(line, head + "##:##:## UTC; host: " + host + "; system: ") << what;
        const std::size_t end = run.out.find("\r\n", line.size());
        const std::string fields = run.out.substr(line.size(), end - std::min(end, line.size()));
        EXPECT_TRUE(std::regex_match(fields, system)) << what << ": " << fields;
        const std::string command =
            "\r\n\"command: " + std::string(before_name) + program_seen() + after_name + " -server " + server.address();
        EXPECT_NE(run.out.find(command + "\"\r\n\r\n"), std::string::npos) << what << ": " << run.out;
    }
}

// How far a run gets decides its acts at the end. Every row asks for -signal
// and -diags: the event and the elapsed time come only past the parsing, the
// diagnostics file's command line once the parser reaches -diags.
TEST(E2eRun, ActsAtTheEndFollowHowFarTheRunGot) {
    enum stage { help, parse_failure, past_parsing };
    temp_dir dir;
    const std::string help_text =
                          std::string(77, '-') +
                          "\n\nvexa ver: 0.48\n\nusage:\n \n vexa -url <domain to lookup> -server <dns srv ip>\n*"
                          " type hosts.txt | vexa -url_pipe -server 8.8.8.8 > results.txt\n\n",
                      diag_file = dir / "d.txt", combination = "invalid combination of commands\n";
    const std::tuple<const char*, strings, bool, int, stage, std::string> cases[] = {
        // server, exit code, stderr
        // clang-format off
        {"no arguments at all", {}, false, 0, help, help_text},
        {"-HELP behind a whole query", {"-url", "a.b", "-HELP"}, true, 0, help, help_text},
        {"/? with -out", {"/?", "-out", dir / "h.txt"}, true, 0, help, help_text},
        {"help and ? are words", {"-url", "a b", "help", "?"}, true, 0, past_parsing, erase},
        {"-quiet", {"-url", "a.b", "-quiet"}, true, 0, past_parsing, ""},
        {"-profile", {"-url", "a.b", "-profile"}, true, 0, past_parsing, erase + "->* secs\n"},
        {"nothing to do", {}, true, 255, past_parsing, help_text + erase},
        {"a name that can't be encoded", {"-url", long_label}, true, 255, past_parsing, erase + "prob building dns packet... aborting\n" + erase},
        {"no -server", {"-url", "a.b"}, false, 255, parse_failure, server_message},
        {"two commands", {"-url", "a.b", "-ip", "1.2.3.4"}, true, 255, parse_failure, combination},
        {"two commands win over no -server", {"-txt", "a", "-url", "b"}, false, 255, parse_failure, combination},
        // clang-format on
    };
    int row = 0;
    for (const auto& [what, args_in, served, exit_code, reached, err] : cases) {
        const std::string event = "vexa_e2e_" + std::to_string(::getpid()) + "_" + std::to_string(row++);
        event_watch watch(event);
        fs::remove(diag_file);
        responder server(silent());
        strings args = args_for(args_in, served ? server.address() : "");
        if (!args.empty()) args.insert(args.end(), {"-timeout", "0", "-signal", event, "-diags", diag_file});
        vexa_run run = run_vexa(args);
        const bool queried = reached == past_parsing && exit_code == 0;
        EXPECT_EQ(run.exit_code, exit_code) << what;
        EXPECT_EQ(watch.was_set(), reached == past_parsing) << what;
        EXPECT_EQ(!seen(server).empty(), queried) << what;
        EXPECT_FALSE(fs::exists(dir / "h.txt")) << what;
        const std::string diags = read_file(diag_file);
        EXPECT_EQ(diags.starts_with("->" + program_seen() + " "), reached != help) << what << ": " << diags;
        EXPECT_EQ(diags.find("\r\r"), std::string::npos) << what << ": " << diags;
        EXPECT_EQ(diags.ends_with(" secs"), reached == past_parsing) << what << ": " << diags;
        if (reached != past_parsing) { EXPECT_EQ(report_body(run.out), "") << what << ": the record alone"; }
        EXPECT_TRUE(matches(run.err, err)) << what << ": " << run.err;
    }
}

TEST(E2eQuery, ReportAndDumpOfATry) {
    const std::string divider = std::string(79, '-') + "\n",
                      sent =
                          "packet that was sent\n"
                          "0000 0000:  {xx} 00 01 00 00 01 00 00  00 00 00 00 01 61 01 62  {c}............a.b\n"
                          "0000 0010:  00 00 01 00 01                                    .....\n\n";
    const std::tuple<const char*, reply_handler, std::string> cases[] = {
        // arguments, server, report body
        {"-url a.b -verbose", answer(one_a),
         "query                                    | comment   | status  | id   | {srvhdr} | date       "
         "|  time-UTC     | type | tname  | class | ttl    | size | data\n"
         "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### "
         "|    1 |      A |     1 |    300 |    4 | 31.32.126.127\n\n" +
             divider + sent +
             "packet that was recv'd\n"
             "0000 0000:  {xx} 00 81 80 00 01 00 01  00 00 00 00 01 61 01 62  {c}............a.b\n"
             "0000 0010:  00 00 01 00 01 c0 0c 00  01 00 01 00 00 01 2c 00  ..............,.\n"
             "0000 0020:  04 1f 20 7e 7f                                    .. ~.\n" +
             divider + "\n"},
        {"-url a.b -verbose -csv -timeout 0", silent(),  // a timeout dumps the sent packet only
         "query,comment,status,id,DNSserv,date, time-UTC,type,tname,class,ttl,size,data\n"
         "a.b,question,timeout,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n\n" +
             divider + sent + divider + "\n"},
    };
    for (const auto& [args, handler, body] : cases) {
        responder server(handler);
        e2e_run r = run_against(server, words(args));
        ASSERT_EQ(r.queries.size(), 1u);
        EXPECT_EQ(r.body, expand(body, id_of(r.queries[0]), server.address()));
    }
}

TEST(E2eQuery, TriesAndTheirStatuses) {
    const auto second_time_lucky = [count = std::make_shared<int>(0)](const datagram& q) {  // silent the first time
        return ++*count == 1 ? std::vector<datagram>{} : std::vector<datagram>{with_id(q, one_a)};
    };
    const auto late = [](const datagram& q) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return std::vector<datagram>{with_id(q, one_a)};
    };
    const datagram qr_clear = join({{0x01, 0x80}, datagram(one_a.begin() + 2, one_a.end())});  // a query, no reply
    // The reply behind the query's ID with `low` added to its first byte and `high` to its second.
    const auto off_id = [](const datagram& q, const datagram& reply, int low, int high) {
        datagram r = with_id(q, reply);
        r[0] = static_cast<std::uint8_t>(r[0] + low), r[1] = static_cast<std::uint8_t>(r[1] + high);
        return r;
    };
    datagram largest = join({datagram(one_a.begin(), one_a.begin() + 21),  // through the answer's name
                             {0xFF, 0, 0, 1, 0, 0, 0, 60, 0xFF, 0xC2}});   // RDLENGTH 65474
    largest.resize(65507 - 2, 0xAB);                                       // the largest UDP payload over IPv4
    // What, arguments besides -url a.b -csv, server, queries it sees, statuses of the rows.
    const std::tuple<const char*, std::string, reply_handler, std::size_t, std::string> cases[] = {
        {"silence", "-retry 2 -timeout 0", silent(), 3, "question timeout|question timeout|question timeout"},
        // "bogus" reads as 255.255.255.255, where a plain socket may not send; the first -server counts.
        {"no packet can go out", "-server bogus -timeout 0", silent(), 0, "question sock err"},
        // Linux and Windows end the wait at once with the error that came back (ECONNREFUSED,
        // WSAECONNRESET), Wine waits out the time-out; a failed read is a time-out.
        {"a port where nothing listens", "-server " + test_loopback_address(), silent(), 0, "question timeout"},
        {"good on the second try", "-retry 3", second_time_lucky, 2, "question timeout|answer success"},
        {"a late reply inside the default time-out", "", late, 1, "answer success"},
        // A wait here would outlast the run's time limit.
        {"no delay behind a good try", "-retry 2 -delay 3600", answer(one_a), 1, "answer success"},
        {"foreign ID fails the try", "-retry 1",  // the right low byte, a high byte set
         [&](const datagram& q) { return std::vector<datagram>{off_id(q, one_a, 0, 1)}; }, 2,
         "answer success|answer success"},
        {"QR clear fails the try", "-retry 1", answer(qr_clear), 2, "question unkresp|question unkresp"},
        {"-retry -1: no try", "-retry -1", answer(one_a), 0, ""},
        {"-retry 2147483647 wraps: no try", "-retry 2147483647", answer(one_a), 0, ""},
        {"only the first datagram of a try", "",  // a stray reply first; the right one is not waited for
         [&](const datagram& q) {
             return std::vector<datagram>{off_id(q, qr_clear, 1, 0), with_id(q, one_a)};
         },
         1, "question unkresp"},
        {"the largest datagram, read whole", "", answer(largest), 1, "answer success"},
    };
    for (const auto& [what, args, handler, queries, rows] : cases) {
        responder server(handler);
        e2e_run r = run_against(server, words("-url a.b " + args + " -csv"));
        EXPECT_EQ(r.run.exit_code, 0) << what;
        ASSERT_EQ(r.queries.size(), queries) << what;
        for (const datagram& q : r.queries) EXPECT_EQ(q, r.queries[0]) << what << ": the same bytes each try";
        EXPECT_EQ(statuses(r.body), rows) << what;
        // One header line per run, however many tries, and none without a row.
        EXPECT_EQ(r.body.starts_with("query,"), !rows.empty()) << what;
        EXPECT_EQ(r.body.find("query,", 1), std::string::npos) << what;
    }
}

// The delay is the tool's own wait: both failed tries wait, the last too.
TEST(E2eQuery, DelayFollowsEachFailedTry) {
    responder quiet(silent());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(run_against(quiet, words("-url a.b -timeout 0 -delay 1 -retry 1")).queries.size(), 2u);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

}  // namespace

// One query from the command line, end to end: the real binary against a
// scripted server on a loopback address of the test's own. The bytes of each
// command's query are the query builder's and the interop tests'; these look
// at what only a run shows: the dumps, tries and their statuses, CR LF.
#include <memory>
#include <thread>
#include <tuple>

#include "support/tool.h"

namespace {

using namespace test_support;

const datagram& one_a = one_a_reply;

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
        responder server(handler, test_loopback_address(args));
        e2e_run r = run_against(server, words(args));
        ASSERT_EQ(r.queries.size(), 1u);
        EXPECT_EQ(r.body, expand(body, id_of(r.queries[0]), server.address()));
    }
}

TEST(E2eQuery, ServersThatCantBeReachedGiveSockErrOrTimeout) {
    // "bogus" reads as 255.255.255.255, where a plain socket may not send: no packet between the dividers.
    vexa_run run = run_vexa(words("-url a.b -server bogus -csv -timeout 0 -verbose"));
    EXPECT_EQ(run.exit_code, 0) << run.err;
    const std::string body = mask_date_time(report_body(run.out), ",");
    EXPECT_EQ(statuses(body), "question sock err");
    EXPECT_TRUE(body.ends_with(",bogus,####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\r\n\r\n" + std::string(79, '-') +
                               "\r\n" + std::string(79, '-') + "\r\n\r\n"))
        << body;
    // A loopback port where nothing listens: Linux and Windows end the wait at once with the error that
    // came back (ECONNREFUSED, WSAECONNRESET), Wine waits out the time-out; a failed read is a time-out.
    run = run_vexa(words("-url a.b -csv -timeout 1 -server " + test_loopback_address("nobody")));
    EXPECT_EQ(statuses(report_body(run.out)), "question timeout");
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
        responder server(handler, test_loopback_address(what));
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

// One query from the command line, end to end: the real binary against a
// scripted server on a loopback address of the test's own.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/e2e.h"
#include "support/netns.h"

namespace {

using namespace test_support;

// ---------------------------------------------------------------- packets --
// Replies are written from the flags on; the handler puts the query's ID in front.

const datagram question_a_b = {1, 'a', 1, 'b', 0};  // a.b. at offset 12

const datagram a_reply = join({
    {0x81, 0x80},                                    // QR RD RA, NOERROR
    {0, 1, 0, 2, 0, 0, 0, 0},                        // QD 1, AN 2
    question_a_b, {0, 1, 0, 1},                      // a.b. A IN
    {0xC0, 12}, {0, 1, 0, 1}, {0, 0, 0x01, 0x2C},    // a.b. A IN, TTL 300
    {0, 4}, {1, 2, 3, 4},                            //   1.2.3.4
    {0xC0, 12}, {0, 1, 0, 1}, {0xFF, 0xFF, 0xFF, 0xFF},  // TTL 2^32-1
    {0, 4}, {10, 0, 0, 255},                         //   10.0.0.255
});

// One answer, as short as a useful reply gets.
const datagram one_a_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},
    question_a_b, {0, 1, 0, 1},
    {0xC0, 12}, {0, 1, 0, 1}, {0, 0, 0x01, 0x2C}, {0, 4}, {1, 2, 3, 4},
});

const datagram aaaa_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},
    question_a_b, {0, 1, 0, 1},
    {0xC0, 12}, {0, 28, 0, 1}, {0, 0, 0, 60}, {0, 16},  // AAAA, TTL 60
    {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
});

const datagram mx_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},
    question_a_b, {0, 15, 0, 1},                     // a.b. MX IN
    {0xC0, 12}, {0, 15, 0, 1}, {0, 0, 0x0E, 0x10}, {0, 9},  // TTL 3600
    {0, 10}, {4, 'm', 'a', 'i', 'l', 0xC0, 12},      //   10 mail.<a.b.>
});

const datagram ns_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},
    question_a_b, {0, 2, 0, 1},
    {0xC0, 12}, {0, 2, 0, 1}, {0, 1, 0x51, 0x80}, {0, 6},  // TTL 86400
    {3, 'n', 's', '1', 0xC0, 12},                    //   ns1.<a.b.>
});

const datagram cname_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},
    {3, 'w', 'w', 'w', 1, 'a', 1, 'b', 0}, {0, 5, 0, 1},  // www.a.b.; a.b. at 16
    {0xC0, 12}, {0, 5, 0, 1}, {0, 0, 0, 60}, {0, 2},
    {0xC0, 16},                                      //   pointer into the middle
});

const datagram ptr_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},
    {1, '4', 1, '3', 1, '2', 1, '1', 7, 'i', 'n', '-', 'a', 'd', 'd', 'r', 4, 'a', 'r', 'p', 'a', 0},
    {0, 12, 0, 1},
    {0xC0, 12}, {0, 12, 0, 1}, {0, 0, 0, 60}, {0, 10},
    {4, 'h', 'o', 's', 't', 1, 'a', 1, 'b', 0},
});

// NXDOMAIN: the question echoed, no answer, the zone's SOA as authority.
const datagram nx_soa_reply = join({
    {0x81, 0x83},                                    // QR RD RA, NXDOMAIN
    {0, 1, 0, 0, 0, 1, 0, 0},                        // QD 1, NS 1
    {2, 'n', 'x', 1, 'a', 1, 'b', 0}, {0, 1, 0, 1},  // nx.a.b. A IN; a.b. at 15
    {0xC0, 15}, {0, 6, 0, 1}, {0, 0, 0x03, 0x84}, {0, 34},  // a.b. SOA, TTL 900
    {3, 'n', 's', '1', 0xC0, 15},                    //   MNAME ns1.a.b.
    {5, 'a', 'd', 'm', 'i', 'n', 0xC0, 15},          //   RNAME admin.a.b.
    {0x78, 0xa3, 0xf1, 0x75},                        //   serial 2024010101
    {0, 0, 0x1c, 0x20}, {0, 0, 0x03, 0x84},          //   refresh 7200, retry 900
    {0, 0x12, 0x75, 0}, {0, 0, 0x01, 0x2c},          //   expire 1209600, minimum 300
});

const datagram txt_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},
    question_a_b, {0, 16, 0, 1},
    {0xC0, 12}, {0, 16, 0, 1}, {0, 0, 0, 60}, {0, 10},
    {5, 'h', 'i', '\r', '\n', '!'}, {3, 'a', ',', 'b'},  // two strings, CR LF inside
});

const datagram unknown_type_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},
    question_a_b, {0, 1, 0, 1},
    {0xC0, 12}, {0xFF, 0x00, 0, 1}, {0, 0, 0, 60}, {0, 3},  // type 65280
    {0x00, 0x0a, 0xff},
});

const datagram empty_rdata_reply = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},
    question_a_b, {0, 1, 0, 1},
    {0xC0, 12}, {0, 1, 0, 1}, {0, 0, 0, 60}, {0, 0},  // RDLENGTH 0
});

// The question echoed and nothing else.
const datagram question_only_reply = join({
    {0x81, 0x80}, {0, 1, 0, 0, 0, 0, 0, 0}, question_a_b, {0, 1, 0, 1},
});

const datagram empty_reply = {0x81, 0x80, 0, 0, 0, 0, 0, 0, 0, 0};  // no section at all

const datagram qr_clear_reply = join({
    {0x01, 0x80},                                    // QR 0: a query, not a reply
    {0, 1, 0, 1, 0, 0, 0, 0}, question_a_b, {0, 1, 0, 1},
    {0xC0, 12}, {0, 1, 0, 1}, {0, 0, 0, 60}, {0, 4}, {1, 2, 3, 4},
});

const std::string erase_sequence = "\x1b[2K\r    \r";

// Report header lines of the two layouts.
const char* const padded_header =
    "query                                    | comment   | status  | id   | {srvhdr} | date       "
    "|  time-UTC     | type | tname  | class | ttl    | size | data\n";
const char* const csv_header = "query,comment,status,id,DNSserv,date, time-UTC,type,tname,class,ttl,size,data\n";

std::string padded(const std::string& rows) { return padded_header + rows; }
std::string csv(const std::string& rows) { return csv_header + rows; }

// The "comment status" pairs of the rows of a -csv report, joined by "|".
std::string statuses(std::string_view body) {
    std::string out;
    std::vector<std::string> lines = lines_of(body);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        if (lines[i].empty()) continue;
        std::size_t c1 = lines[i].find(',');
        std::size_t c2 = lines[i].find(',', c1 + 1);
        std::size_t c3 = lines[i].find(',', c2 + 1);
        if (c3 == std::string::npos) continue;
        if (!out.empty()) out += "|";
        out += lines[i].substr(c1 + 1, c2 - c1 - 1) + " " + lines[i].substr(c2 + 1, c3 - c2 - 1);
    }
    return out;
}

// ------------------------------------------------------------ query bytes --

struct query_case {
    const char* what;
    std::vector<std::string> command;
    datagram after_id;  // the query from byte 2 on
};

TEST(E2eQuery, QueryBytesOfEachCommand) {
    const datagram header = {0x01, 0x00, 0, 1, 0, 0, 0, 0, 0, 0};  // RD; QD 1
    const query_case cases[] = {
        {"-url", {"-url", "www.example.com"},
         join({header, {3, 'w', 'w', 'w', 7, 'e', 'x', 'a', 'm', 'p', 'l', 'e', 3, 'c', 'o', 'm', 0},
               {0, 1, 0, 1}})},
        {"-ip reverses", {"-ip", "192.0.2.1"},
         join({header,
               {1, '1', 1, '2', 1, '0', 3, '1', '9', '2', 7, 'i', 'n', '-', 'a', 'd', 'd', 'r', 4, 'a',
                'r', 'p', 'a', 0},
               {0, 12, 0, 1}})},
        {"-mx", {"-mx", "a.b"}, join({header, question_a_b, {0, 15, 0, 1}})},
        {"-ns with trailing dot", {"-ns", "a.b."}, join({header, question_a_b, {0, 2, 0, 1}})},
        {"-cname with stray dots", {"-cname", ".a..b"}, join({header, question_a_b, {0, 5, 0, 1}})},
        {"-txt", {"-txt", "a.b"}, join({header, question_a_b, {0, 16, 0, 1}})},
        {"-URL in capitals keeps the name's case", {"-URL", "A.b"},
         join({header, {1, 'A', 1, 'b', 0}, {0, 1, 0, 1}})},
    };
    responder server(silent());
    for (const query_case& c : cases) {
        std::vector<std::string> args = c.command;
        args.insert(args.end(), {"-timeout", "0"});
        e2e_run r = run_against(server, args);
        EXPECT_EQ(r.run.exit_code, 0) << c.what;
        std::vector<datagram> queries = server.queries();
        ASSERT_FALSE(queries.empty()) << c.what;
        const datagram& q = queries.back();
        ASSERT_GE(q.size(), 2u) << c.what;
        EXPECT_GE(q[0], 10) << c.what;
        EXPECT_LE(q[0], 99) << c.what;
        EXPECT_EQ(q[1], 0) << c.what;
        EXPECT_EQ(datagram(q.begin() + 2, q.end()), c.after_id) << c.what;
    }
    EXPECT_EQ(server.queries().size(), std::size(cases));
}

// ------------------------------------------------------------ record rows --

struct record_case {
    const char* what;
    std::vector<std::string> command;
    datagram reply;
    const char* padded_rows;
    const char* csv_rows;
};

TEST(E2eQuery, RowsOfTypicalRepliesInBothLayouts) {
    const record_case cases[] = {
        {"A, two answers", {"-url", "a.b"}, a_reply,
         "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |    1 |      A |     1 |    300 |    4 | 1.2.3.4\n"
         "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |    1 |      A |     1 | 4294967295 |    4 | 10.0.0.255\n",
         "a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,1,A,1,300,4,1.2.3.4\n"
         "a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,1,A,1,4294967295,4,10.0.0.255\n"},
        {"AAAA", {"-url", "a.b"}, aaaa_reply,
         "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |   28 |   AAAA |     1 |     60 |   16 | 2001:db8:0:0:0:0:0:1\n",
         "a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,28,AAAA,1,60,16,2001:db8:0:0:0:0:0:1\n"},
        {"MX with a pointer", {"-mx", "a.b"}, mx_reply,
         "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |   15 |     MX |     1 |   3600 |    9 | 10; mail.a.b.\n",
         "a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,15,MX,1,3600,9,10;mail.a.b.\n"},
        {"NS with a pointer", {"-ns", "a.b"}, ns_reply,
         "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |    2 |     NS |     1 |  86400 |    6 | ns1.a.b.\n",
         "a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,2,NS,1,86400,6,ns1.a.b.\n"},
        {"CNAME pointing into a name", {"-cname", "www.a.b"}, cname_reply,
         "www.a.b.                                 | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |    5 |  CNAME |     1 |     60 |    2 | a.b.\n",
         "www.a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,5,CNAME,1,60,2,a.b.\n"},
        {"PTR", {"-ip", "1.2.3.4"}, ptr_reply,
         "4.3.2.1.in-addr.arpa.                    | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |   12 |    PTR |     1 |     60 |   10 | host.a.b.\n",
         "4.3.2.1.in-addr.arpa.,answer,success,{id},{srv},####-##-##, ##:##:##.###,12,PTR,1,60,10,host.a.b.\n"},
        {"NXDOMAIN with SOA: invalid question, then authority", {"-url", "nx.a.b"}, nx_soa_reply,
         "nx.a.b.                                  | question  | invalid | {id4} | {srv} | ####-##-## |  ##:##:##.### |    1 |      A |     1 |      0 |    0 |   <none>\n"
         "a.b.                                     | authority | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |    6 |    SOA |     1 |    900 |   34 | ns1.a.b.; admin.a.b.; 0x78a3f175; 0x00001c20; 0x00000384; 0x00127500; 0x0000012c\n",
         "nx.a.b.,question,invalid,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n"
         "a.b.,authority,success,{id},{srv},####-##-##, ##:##:##.###,6,SOA,1,900,34,ns1.a.b.;admin.a.b.;0x78a3f175;0x00001c20;0x00000384;0x00127500;0x0000012c\n"},
        {"the same to -cname: no invalid row", {"-cname", "nx.a.b"}, nx_soa_reply,
         "a.b.                                     | authority | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |    6 |    SOA |     1 |    900 |   34 | ns1.a.b.; admin.a.b.; 0x78a3f175; 0x00001c20; 0x00000384; 0x00127500; 0x0000012c\n",
         "a.b.,authority,success,{id},{srv},####-##-##, ##:##:##.###,6,SOA,1,900,34,ns1.a.b.;admin.a.b.;0x78a3f175;0x00001c20;0x00000384;0x00127500;0x0000012c\n"},
        {"TXT raw, CR LF blanked, empty line behind", {"-txt", "a.b"}, txt_reply,
         "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |   16 |    TXT |     1 |     60 |   10 | \x05" "hi  !\x03" "a,b\n\n",
         "a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,16,TXT,1,60,10,\x05" "hi  !\x03" "a,b\n\n"},
        {"unknown type in hex", {"-url", "a.b"}, unknown_type_reply,
         "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### | 65280 |    unk |     1 |     60 |    3 | 00 0a ff\n",
         "a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,65280,unk,1,60,3,00 0a ff\n"},
        {"RDLENGTH 0", {"-url", "a.b"}, empty_rdata_reply,
         "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |    1 |      A |     1 |     60 |    0 |   <none>\n",
         "a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,1,A,1,60,0,  <none>\n"},
    };
    for (const record_case& c : cases) {
        responder server(answer(c.reply), test_loopback_address(c.what));
        for (bool as_csv : {false, true}) {
            std::vector<std::string> args = c.command;
            if (as_csv) args.push_back("-csv");
            const std::time_t before = std::time(nullptr);
            e2e_run r = run_against(server, args);
            const std::time_t after = std::time(nullptr);
            EXPECT_EQ(r.run.exit_code, 0) << c.what;
            ASSERT_FALSE(r.queries.empty()) << c.what;
            const std::uint16_t id = id_of(r.queries.back());
            const std::string expected =
                as_csv ? csv(c.csv_rows) : padded(c.padded_rows);
            EXPECT_EQ(r.body, expand(expected, id, server.address())) << c.what;
            EXPECT_TRUE(date_time_cells_valid(report_body(r.run.out), as_csv ? "," : " | ", before,
                                              after))
                << c.what;
        }
    }
}

// ---------------------------------------------------------- status words --

TEST(E2eQuery, StatusOfOneTry) {
    struct status_case {
        const char* what;
        std::vector<std::string> command;
        reply_handler handler;
        const char* timeout;   // a reply takes a moment: only silence gets 0
        const char* csv_rows;  // "" : not even the header line
    };
    const status_case cases[] = {
        {"silence: timeout, the query as typed", {"-url", "a.b"}, silent(), "0",
         "a.b,question,timeout,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n"},
        {"QR clear: unkresp from the query", {"-url", "a.b"}, answer(qr_clear_reply), "1",
         "a.b,question,unkresp,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n"},
        {"no section at all: unkresp", {"-mx", "a.b"}, answer(empty_reply), "1",
         "a.b,question,unkresp,{id},{srv},####-##-##, ##:##:##.###,15,MX,1,0,0,  <none>\n"},
        {"question only: invalid", {"-url", "a.b"}, answer(question_only_reply), "1",
         "a.b.,question,invalid,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n"},
        {"question only to -cname: no row, no header", {"-cname", "a.b"},
         answer(question_only_reply), "1", ""},
        {"empty datagram: timeout", {"-url", "a.b"},
         [](const datagram&) { return std::vector<datagram>{datagram{}}; }, "1",
         "a.b,question,timeout,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n"},
    };
    for (const status_case& c : cases) {
        responder server(c.handler, test_loopback_address(c.what));
        std::vector<std::string> args = c.command;
        args.insert(args.end(), {"-csv", "-timeout", c.timeout});
        e2e_run r = run_against(server, args);
        EXPECT_EQ(r.run.exit_code, 0) << c.what;
        ASSERT_EQ(r.queries.size(), 1u) << c.what;
        const std::string rows = c.csv_rows;
        const std::string expected = rows.empty() ? "" : csv(rows);
        EXPECT_EQ(r.body, expand(expected, id_of(r.queries[0]), server.address())) << c.what;
    }
}

TEST(E2eQuery, ServerTextThatIsNoAddressGivesSockErr) {
    // "bogus" reads as 255.255.255.255, which a plain socket may not send to.
    vexa_run run = run_vexa({"-url", "a.b", "-server", "bogus", "-csv", "-timeout", "0", "-verbose"});
    EXPECT_EQ(run.exit_code, 0) << run.err;
    std::vector<std::string> lines = lines_of(mask_date_time(report_body(run.out), ","));
    ASSERT_EQ(lines.size(), 6u) << run.out;
    // The ID is the query's own, though nothing left the machine.
    const std::string& row = lines[1];
    ASSERT_GT(row.size(), 18u);
    EXPECT_EQ(row.substr(0, 18), "a.b,question,sock ");
    std::size_t id_at = row.find(',', 18) + 1;
    std::size_t id_end = row.find(',', id_at);
    const int id = std::stoi(row.substr(id_at, id_end - id_at), nullptr, 16);
    EXPECT_GE(id, 10);
    EXPECT_LE(id, 99);
    EXPECT_EQ(row.substr(id_end), ",bogus,####-##-##, ##:##:##.###,1,A,1,0,0,  <none>");
    // The dump of a try that sent nothing: two dividers.
    const std::string divider(79, '-');
    EXPECT_EQ(lines[2], "");
    EXPECT_EQ(lines[3], divider);
    EXPECT_EQ(lines[4], divider);
    EXPECT_EQ(lines[5], "");
}

TEST(E2eQuery, ServerOutsideLoopbackFailsWithoutLeavingTheMachine) {
    // In the test namespace there is no route: the default server can't be reached.
    if (!private_network()) GTEST_SKIP() << "would send to the host's network";
    vexa_run run = run_vexa({"-url", "a.b", "-server", "8.8.8.8", "-csv", "-timeout", "0"});
    EXPECT_EQ(run.exit_code, 0);
    const std::string status = statuses(report_body(run.out));
    EXPECT_TRUE(status == "question sock err" || status == "question timeout") << status;
}

// ------------------------------------------------------------------ tries --

TEST(E2eQuery, TriesAndWhatEndsThem) {
    struct retry_case {
        const char* what;
        const char* retry;
        reply_handler handler;
        const char* timeout;  // a reply takes a moment: only silence gets 0
        std::size_t queries;
        const char* statuses;
    };
    // Silent on the first query, answers from the second on.
    auto second_time_lucky = [] {
        auto count = std::make_shared<int>(0);
        return [count](const datagram& q) {
            return ++*count == 1 ? std::vector<datagram>{}
                                 : std::vector<datagram>{with_id(q, one_a_reply)};
        };
    };
    // The right low byte with a high byte set: the whole ID must match.
    auto foreign_id = [](const datagram& q) {
        datagram reply = with_id(q, one_a_reply);
        reply[1] = 0x01;
        return std::vector<datagram>{reply};
    };
    const retry_case cases[] = {
        {"silent, -retry 2: three timeouts", "2", silent(), "0", 3,
         "question timeout|question timeout|question timeout"},
        {"good at once, -retry 3: one try", "3", answer(one_a_reply), "1", 1, "answer success"},
        {"good on the second try", "3", second_time_lucky(), "1", 2, "question timeout|answer success"},
        {"foreign ID counts as failed", "1", foreign_id, "1", 2, "answer success|answer success"},
        {"QR clear counts as failed", "1", answer(qr_clear_reply), "1", 2,
         "question unkresp|question unkresp"},
        {"-retry -1: no try at all", "-1", answer(one_a_reply), "1", 0, ""},
        {"-retry 2147483647 wraps negative: no try", "2147483647", answer(one_a_reply), "1", 0, ""},
    };
    for (const retry_case& c : cases) {
        responder server(c.handler, test_loopback_address(c.what));
        e2e_run r = run_against(server, {"-url", "a.b", "-csv", "-timeout", c.timeout, "-retry", c.retry});
        EXPECT_EQ(r.run.exit_code, 0) << c.what;
        ASSERT_EQ(r.queries.size(), c.queries) << c.what;
        for (const datagram& q : r.queries) EXPECT_EQ(q, r.queries[0]) << c.what << ": same bytes";
        EXPECT_EQ(statuses(r.body), c.statuses) << c.what;
        if (c.queries == 0) {
            EXPECT_EQ(r.body, "") << c.what;
        }
        // One header line per run, however many tries.
        std::size_t headers = 0;
        for (const std::string& line : lines_of(r.body)) headers += line.rfind("query,", 0) == 0;
        EXPECT_EQ(headers, c.queries == 0 ? 0u : 1u) << c.what;
    }
}

TEST(E2eQuery, ForeignIdIsReportedAsItCame) {
    responder server([](const datagram& q) {
        datagram reply = with_id(q, one_a_reply);
        reply[1] = 0x01;
        return std::vector<datagram>{reply};
    });
    e2e_run r = run_against(server, {"-url", "a.b", "-csv", "-timeout", "1"});
    ASSERT_EQ(r.queries.size(), 1u);
    EXPECT_EQ(r.body, expand(csv("a.b.,answer,success,{id},{srv},####-##-##, ##:##:##.###,1,A,1,300,4,1.2.3.4\n"),
                             static_cast<std::uint16_t>(0x100 | r.queries[0][0]), server.address()));
}

TEST(E2eQuery, OnlyTheFirstDatagramOfATryIsTaken) {
    // A stray datagram with another ID comes first; the right one behind it is not waited for.
    responder server([](const datagram& q) {
        datagram stray = with_id(q, qr_clear_reply);
        stray[0] = static_cast<std::uint8_t>(stray[0] + 1);
        return std::vector<datagram>{stray, with_id(q, one_a_reply)};
    });
    e2e_run r = run_against(server, {"-url", "a.b", "-csv", "-timeout", "1"});
    EXPECT_EQ(r.queries.size(), 1u);
    EXPECT_EQ(statuses(r.body), "question unkresp");
}

TEST(E2eQuery, DelayFollowsFailedTriesOnly) {
    using clock = std::chrono::steady_clock;
    responder good(answer(one_a_reply), test_loopback_address("good"));
    auto start = clock::now();
    e2e_run r = run_against(good, {"-url", "a.b", "-timeout", "1", "-delay", "3", "-retry", "2"});
    EXPECT_LT(clock::now() - start, std::chrono::milliseconds(2500)) << "waited after a good try";
    EXPECT_EQ(r.queries.size(), 1u);

    responder quiet(silent(), test_loopback_address("quiet"));
    start = clock::now();
    r = run_against(quiet, {"-url", "a.b", "-timeout", "0", "-delay", "1", "-retry", "1"});
    // Both failed tries wait, the last one too.
    EXPECT_GE(clock::now() - start, std::chrono::milliseconds(1900));
    EXPECT_EQ(r.queries.size(), 2u);
}

// ---------------------------------------------------------------- verbose --

TEST(E2eQuery, VerboseDumpsBothPackets) {
    responder server(answer(one_a_reply));
    e2e_run r = run_against(server, {"-url", "a.b", "-verbose"});
    ASSERT_EQ(r.queries.size(), 1u);
    const std::string expected = padded(
        "a.b.                                     | answer    | success | {id4} | {srv} | ####-##-## |  ##:##:##.### |    1 |      A |     1 |    300 |    4 | 1.2.3.4\n"
        "\n"
        "-------------------------------------------------------------------------------\n"
        "packet that was sent\n"
        "0000 0000:  {xx} 00 01 00 00 01 00 00  00 00 00 00 01 61 01 62  {c}............a.b\n"
        "0000 0010:  00 00 01 00 01                                    .....\n"
        "\n"
        "packet that was recv'd\n"
        "0000 0000:  {xx} 00 81 80 00 01 00 01  00 00 00 00 01 61 01 62  {c}............a.b\n"
        "0000 0010:  00 00 01 00 01 c0 0c 00  01 00 01 00 00 01 2c 00  ..............,.\n"
        "0000 0020:  04 01 02 03 04                                    .....\n"
        "-------------------------------------------------------------------------------\n"
        "\n");
    EXPECT_EQ(r.body, expand(expected, id_of(r.queries[0]), server.address()));
}

TEST(E2eQuery, VerboseTimeoutDumpsTheSentPacketOnly) {
    responder server(silent());
    e2e_run r = run_against(server, {"-url", "a.b", "-verbose", "-csv", "-timeout", "0"});
    ASSERT_EQ(r.queries.size(), 1u);
    const std::string expected = csv(
        "a.b,question,timeout,{id},{srv},####-##-##, ##:##:##.###,1,A,1,0,0,  <none>\n"
        "\n"
        "-------------------------------------------------------------------------------\n"
        "packet that was sent\n"
        "0000 0000:  {xx} 00 01 00 00 01 00 00  00 00 00 00 01 61 01 62  {c}............a.b\n"
        "0000 0010:  00 00 01 00 01                                    .....\n"
        "\n"
        "-------------------------------------------------------------------------------\n"
        "\n");
    EXPECT_EQ(r.body, expand(expected, id_of(r.queries[0]), server.address()));
}

// -------------------------------------------------------- hostile replies --

// Every byte of a full reply, cut off after each length in turn.
TEST(E2eQuery, RepliesCutOffAnywhereNeverCrash) {
    const datagram full = join({
        {0x81, 0x80}, {0, 1, 0, 1, 0, 1, 0, 1},      // one of each section
        question_a_b, {0, 15, 0, 1},
        {0xC0, 12}, {0, 15, 0, 1}, {0, 0, 0, 60}, {0, 9}, {0, 10}, {4, 'm', 'a', 'i', 'l', 0xC0, 12},
        {0xC0, 12}, {0, 2, 0, 1}, {0, 0, 0, 60}, {0, 2}, {0xC0, 12},
        {0xC0, 12}, {0, 16, 0, 1}, {0, 0, 0, 60}, {0, 3}, {2, 'o', 'k'},
    });
    std::atomic<std::size_t> cut = 0;  // read on the server's thread
    responder server([&cut, &full](const datagram& q) {
        datagram reply = with_id(q, full);
        reply.resize(cut.load());
        return std::vector<datagram>{reply};
    });
    for (cut = 0; cut <= full.size() + 2; ++cut) {
        e2e_run r = run_against(server, {"-mx", "a.b", "-csv", "-timeout", "1"});
        EXPECT_EQ(r.run.exit_code, 0) << "cut at " << cut.load();
        const std::string status = statuses(r.body);
        std::string expected = "some row";
        if (cut == 0) {
            expected = "question timeout";  // an empty datagram is no reply
        } else if (cut <= 12) {
            expected = "question unkresp";  // a header at most: nothing decoded
        } else if (cut.load() == full.size() + 2) {
            expected = "answer success|authority success|additions success";
        }
        if (expected == "some row") {
            EXPECT_FALSE(status.empty()) << "cut at " << cut.load();
        } else {
            EXPECT_EQ(status, expected) << "cut at " << cut.load();
        }
    }
}

TEST(E2eQuery, HostileRepliesGiveWhatWasDecoded) {
    struct hostile_case {
        const char* what;
        datagram reply;  // from the flags on
        const char* statuses;
    };
    datagram largest = join({
        {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0}, question_a_b, {0, 1, 0, 1},
        {0xC0, 12}, {0xFF, 0x00, 0, 1}, {0, 0, 0, 60}, {0xFF, 0xC2},  // RDLENGTH 65474
    });
    largest.resize(max_datagram - 2, 0xAB);
    const hostile_case cases[] = {
        {"pointer loop in an owner name",
         join({{0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0}, question_a_b, {0, 1, 0, 1},
               {0xC0, 21}, {0, 1, 0, 1}, {0, 0, 0, 60}, {0, 4}, {1, 2, 3, 4}}),  // 21 points at itself
         "question invalid"},
        {"RDATA past the end",
         join({{0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0}, question_a_b, {0, 1, 0, 1},
               {0xC0, 12}, {0, 1, 0, 1}, {0, 0, 0, 60}, {0, 5}, {1, 2, 3, 4}}),
         "question invalid"},
        {"ANCOUNT above what is there",
         join({{0x81, 0x80}, {0, 1, 0, 5, 0, 0, 0, 0}, datagram(a_reply.begin() + 10, a_reply.end())}),
         "answer success|answer success"},
        {"ANCOUNT below what is there",
         join({{0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0}, datagram(a_reply.begin() + 10, a_reply.end())}),
         "answer success"},
        {"no question, one answer",
         join({{0x81, 0x80}, {0, 0, 0, 1, 0, 0, 0, 0},
               question_a_b, {0, 1, 0, 1}, {0, 0, 0, 60}, {0, 4}, {1, 2, 3, 4}}),
         "answer success"},
        {"QR clear", qr_clear_reply, "question unkresp"},
        {"a name of pointers to pointers", join({{0xC0, 0xC0}, datagram(max_datagram - 4, 0xC0)}),
         "question unkresp"},
        {"the largest datagram", largest, "answer success"},
    };
    for (const hostile_case& c : cases) {
        responder server(answer(c.reply), test_loopback_address(c.what));
        e2e_run r = run_against(server, {"-url", "a.b", "-csv", "-timeout", "1"});
        EXPECT_EQ(r.run.exit_code, 0) << c.what;
        EXPECT_EQ(server.failed_sends(), 0u) << c.what;
        EXPECT_EQ(statuses(r.body), c.statuses) << c.what;
    }
}

TEST(E2eQuery, LargestDatagramIsReadWhole) {
    datagram reply = join({
        {0x81, 0x80}, {0, 0, 0, 1, 0, 0, 0, 0},
        question_a_b, {0xFF, 0x00, 0, 1}, {0, 0, 0, 60}, {0xFF, 0xC8},  // RDLENGTH 65480
    });
    reply.resize(max_datagram - 2, 0x5A);  // 65507 bytes with the ID
    responder server(answer(reply));
    e2e_run r = run_against(server, {"-url", "a.b", "-csv"});
    ASSERT_EQ(server.failed_sends(), 0u);
    std::vector<std::string> lines = lines_of(r.body);
    ASSERT_EQ(lines.size(), 2u);
    const std::string prefix = "a.b.,answer,success,";
    ASSERT_EQ(lines[1].substr(0, prefix.size()), prefix);
    const std::size_t size_at = lines[1].find(",65480,");
    ASSERT_NE(size_at, std::string::npos);
    std::string data = lines[1].substr(size_at + 7);
    EXPECT_EQ(data.size(), 65480u * 3 - 1);
    EXPECT_EQ(data.substr(data.size() - 5), "5a 5a");
}

// ------------------------------------------------------ exits and messages --

TEST(E2eQuery, ExitCodesAndMessages) {
    struct exit_case {
        const char* what;
        std::vector<std::string> args;  // -server <responder> is added when `with_server`
        bool with_server;
        int exit_code;
        std::string err;
        std::size_t queries;
    };
    const std::string server_message =
        "error: need to specify a DNS server to query using the format: -server <ipv4 addr>\n";
    const std::string build_message = erase_sequence + "prob building dns packet... aborting\n";
    const exit_case cases[] = {
        {"no -server", {"-url", "a.b"}, false, 255, server_message, 0},
        {"-server without its value", {"-url", "a.b", "-server"}, false, 255, server_message, 0},
        {"two plain commands", {"-url", "a.b", "-ip", "1.2.3.4"}, true, 255,
         "invalid combination of commands\n", 0},
        {"two commands win over a missing server", {"-txt", "a", "-url", "b"}, false, 255,
         "invalid combination of commands\n", 0},
        {"a name of dots only", {"-url", "..."}, true, 255, build_message + erase_sequence, 0},
        {"a label of 256 bytes", {"-url", std::string(256, 'x') + ".b"}, true, 255,
         build_message + erase_sequence, 0},
        {"a label of 255 bytes goes out", {"-url", std::string(255, 'x') + ".b", "-timeout", "0"},
         true, 0, erase_sequence, 1},
    };
    for (const exit_case& c : cases) {
        responder server(silent(), test_loopback_address(c.what));
        std::vector<std::string> args = c.args;
        if (c.with_server) args.insert(args.end(), {"-server", server.address()});
        vexa_run run = run_vexa(args);
        EXPECT_EQ(run.exit_code, c.exit_code) << c.what;
        EXPECT_EQ(run.err, c.err) << c.what;
        EXPECT_EQ(server.queries().size(), c.queries) << c.what;
        EXPECT_TRUE(lines_end_in_crlf(run.out)) << c.what;
        if (c.exit_code != 0) {
            EXPECT_EQ(report_body(run.out), "") << c.what;
        }
    }
}

}  // namespace

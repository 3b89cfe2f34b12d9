#include "report/result_dispatch.h"

#include <gtest/gtest.h>

#include <tuple>

#include "dns/reply_parser.h"
#include "support/fixtures.h"

namespace {

using test_support::join;

// A reply with ID 42, QR set (unless `qr` is false) and the four counts.
byte_list header(int qd, int an, int ns, int ar, bool qr = true) {
    return {0x2a, 0, static_cast<std::uint8_t>(qr ? 0x81 : 0x01), 0x80, 0, static_cast<std::uint8_t>(qd), 0,
            static_cast<std::uint8_t>(an), 0, static_cast<std::uint8_t>(ns), 0, static_cast<std::uint8_t>(ar)};
}
const byte_list q_ab = {1, 'a', 1, 'b', 0, 0, 1, 0, 1};                      // 12: a.b. A IN
const byte_list a_rr = {0xc0, 12, 0, 1, 0, 1, 0, 0, 1, 0x2c, 0, 4, 1, 2, 3, 4};  // a.b. A 1.2.3.4
const byte_list ns_rr = {0xc0, 14, 0, 2, 0, 1, 0, 0, 1, 0x2c, 0, 2, 0xc0, 14};   // b. NS b.

// What one attempt came to: `sent` bytes out, `reply` back (empty: nothing).
dns_result attempt(std::uint32_t sent, const byte_list& reply) {
    dns_result result;
    result.sent_size = sent;
    result.recv_size = static_cast<std::uint32_t>(reply.size());
    result.recv_packet = shared_packet(reply);
    std::uint16_t id = 0;
    parse_reply("8.8.8.8", 0, result.recv_packet, id, result.question_list, result.answer_list,
                result.authority_list, result.additions_list);
    return result;
}

dns_entry built_query(std::uint16_t type) {
    dns_entry query = test_support::record_entry(type, {});
    query.query = "a.b";  // as typed: no trailing dot
    return query;
}

TEST(ResultDispatch, StatusAndCommentOfEachRow) {
    // What, query type, bytes sent, reply (none: nothing came), query, comment and status of each row.
    const std::tuple<const char*, std::uint16_t, std::uint32_t, byte_list, std::string> cases[] = {
        {"nothing sent", 1, 0, {}, "a.b,question,sock err|"},
        {"nothing came back", 1, 21, {}, "a.b,question,timeout|"},
        {"not a reply", 1, 21, join({header(1, 0, 0, 0, false), q_ab}), "a.b,question,unkresp|"},
        {"two answers", 1, 21, join({header(1, 2, 0, 0), q_ab, a_rr, a_rr}), "a.b.,answer,success|a.b.,answer,success|"},
        {"no answer", 1, 21, join({header(1, 0, 1, 0), q_ab, ns_rr}), "a.b.,question,invalid|b.,authority,success|"},
        {"no answer to CNAME", 5, 21, join({header(1, 0, 1, 0), q_ab, ns_rr}), "b.,authority,success|"},
        {"echo only to CNAME", 5, 21, join({header(1, 0, 0, 0), q_ab}), ""},
        {"parse stopped halfway", 1, 21,   // RDLENGTH 64 of 0
         join({header(1, 2, 0, 1), q_ab, a_rr, {0xc0, 12, 0, 1, 0, 1, 0, 0, 0, 1, 0, 64}}),
         "a.b.,answer,success|"},
        {"no question section", 1, 21,
         join({header(0, 1, 1, 1), {1, 'a', 0, 0, 1, 0, 1, 0, 0, 1, 0x2c, 0, 4, 1, 2, 3, 4},  // a. A
               {1, 'n', 0, 0, 2, 0, 1, 0, 0, 1, 0x2c, 0, 2, 0xc0, 12},                        // n. NS a.
               {1, 'x', 0, 0, 1, 0, 1, 0, 0, 1, 0x2c, 0, 4, 9, 9, 9, 9}}),                    // x. A
         "a.,answer,success|n.,authority,success|x.,additions,success|"},
    };
    for (const auto& [name, type, sent, reply, expected] : cases) {
        input_params params;
        params.separator = ",";
        params.compact_columns = true;
        dns_result result = attempt(sent, reply);
        dns_entry query = built_query(type);
        test_support::string_output out;
        EXPECT_TRUE(report_result(out, result, query, params));
        const std::string& text = out.text();
        std::string rows;
        for (std::size_t pos = 0, end; (end = text.find("\r\n", pos)) != std::string::npos; pos = end + 2) {
            const std::string line = text.substr(pos, end - pos);
            const std::size_t second = line.find(',', line.find(',') + 1);
            if (!line.starts_with("query,")) rows += line.substr(0, line.find(',', second + 1)) + "|";
        }
        EXPECT_EQ(rows, expected) << name;
        // The header line comes only in front of a row, and only once.
        EXPECT_EQ(text.starts_with("query,"), !expected.empty()) << name;
        EXPECT_EQ(params.show_header, expected.empty()) << name;
    }
}

TEST(ResultDispatch, XmlRowsCarryNoComment) {
    input_params params;
    params.xml_output = true;
    dns_result result = attempt(21, join({header(1, 0, 1, 0), q_ab, ns_rr}));
    dns_entry query = built_query(1);
    test_support::string_output out;
    report_result(out, result, query, params);
    const std::string& text = out.text();
    const std::size_t first = text.find("<status>invalid</status>");
    EXPECT_NE(first, std::string::npos);
    EXPECT_NE(text.find("<status>success</status>", first), std::string::npos);
    EXPECT_EQ(text.find("authority"), std::string::npos);
    EXPECT_EQ(text.find("query "), std::string::npos);  // no text header in XML
}

}  // namespace

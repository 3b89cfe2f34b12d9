#include "report/result_dispatch.h"

#include <tuple>

#include "dns/dns_result.h"
#include "dns/reply_parser.h"
#include "driver/tool_options.h"
#include "support/e2e.h"

namespace {

using test_support::join;

// The -csv report of one attempt of a query for a.b: `sent` bytes out, `reply` back (empty: nothing).
std::string report(std::uint16_t type, std::uint32_t sent, const byte_list& reply) {
    dns_result result;
    result.sent_size = sent;
    result.recv_size = static_cast<std::uint32_t>(reply.size());
    result.recv_packet = shared_packet(reply);
    std::uint16_t id = 0;
    parse_reply("8.8.8.8", 0, result.recv_packet, id, result.question_list, result.answer_list, result.authority_list,
                result.additions_list);
    dns_entry query = test_support::record_entry(type, {});
    query.query = "a.b";  // as typed: no trailing dot
    input_params params;
    params.separator = ",";
    params.compact_columns = true;
    const report_settings settings = make_report_settings(params);
    test_support::string_output out;
    report_writer(settings).report_result(out, result, query);
    return out.text();
}

TEST(ResultDispatch, StatusAndCommentOfEachRow) {
    const auto header = [](std::uint8_t qr, std::uint8_t an, std::uint8_t ns, std::uint8_t ar) {
        return byte_list{0x2a, 0, qr, 0x80, 0, 1, 0, an, 0, ns, 0, ar, 1, 'a', 1, 'b', 0, 0, 1, 0, 1};  // a.b. A IN
    };
    const byte_list a_rr = {0xc0, 12, 0, 1, 0, 1, 0, 0, 1, 0x2c, 0, 4, 1, 2, 3, 4};  // a.b. A 1.2.3.4
    const byte_list ns_rr = {0xc0, 14, 0, 2, 0, 1, 0, 0, 1, 0x2c, 0, 2, 0xc0, 14};   // b. NS b.
    // What, query type, bytes sent, reply (none: nothing came), query, comment and status of each row.
    const std::tuple<const char*, std::uint16_t, std::uint32_t, byte_list, std::string> cases[] = {
        {"nothing sent", 1, 0, {}, "a.b,question,sock err|"},
        {"nothing came back", 1, 21, {}, "a.b,question,timeout|"},
        {"not a reply", 1, 21, header(0x01, 0, 0, 0), "a.b,question,unkresp|"},
        {"an answer", 1, 21, join({header(0x81, 1, 0, 0), a_rr}), "a.b.,answer,success|"},
        {"no answer", 1, 21, join({header(0x81, 0, 1, 0), ns_rr}), "a.b.,question,invalid|b.,authority,success|"},
        {"no answer to CNAME", 5, 21, join({header(0x81, 0, 1, 0), ns_rr}), "b.,authority,success|"},
        {"echo only to CNAME", 5, 21, header(0x81, 0, 0, 0), ""},
        {"parse stopped halfway", 1, 21,  // RDLENGTH 64 of 0
         join({header(0x81, 2, 0, 1), a_rr, {0xc0, 12, 0, 1, 0, 1, 0, 0, 0, 1, 0, 64}}), "a.b.,answer,success|"},
    };
    for (const auto& [what, type, sent, reply, expected] : cases) {
        const std::string text = report(type, sent, reply);
        std::vector<std::string> lines = test_support::lines_of(text);
        // The header line comes in front of the first row, and only then.
        const bool header = !lines.empty() && lines.front().starts_with("query,comment,status,");
        EXPECT_EQ(header, !expected.empty()) << what;
        if (header) lines.erase(lines.begin());
        std::string rows;  // the first three cells of each row
        for (const std::string& line : lines)
            if (const auto cells = test_support::cells_of(line, ","); !cells.empty())
                rows += std::string(cells[0]) + "," + std::string(cells[1]) + "," + std::string(cells[2]) + "|";
        EXPECT_EQ(rows, expected) << what;
    }
}

}  // namespace

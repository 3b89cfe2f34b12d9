#include "report/result_dispatch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dns/reply_parser.h"
#include "timefmt/time_parts.h"

namespace {

// Collects the report; its line ends arrive as CR LF.
struct string_output final : uni::output_stream {
    explicit string_output(std::size_t buffer_size = 64) : output_stream(buffer_size) {}
    const std::string& text() {
        flush_buffer();
        return bytes;
    }
    bool write_bytes(const char* data, std::size_t count) override {
        bytes.append(data, count);
        return true;
    }
    std::string bytes;
};

const std::uint64_t sample_time = fields_to_ticks(2026, 11, 19, 9, 5, 7, 42);

dns_entry built_query(std::uint16_t type) {
    dns_entry query;
    query.query = "a.b";  // as typed: no trailing dot
    query.dns_server = "8.8.8.8";
    query.dns_type = type;
    query.dns_class = 1;
    query.packet_id = 42;
    query.query_time = sample_time;
    return query;
}

dns_result attempt(std::uint32_t sent, const byte_list& reply) {
    dns_result result;
    result.sent_size = sent;
    result.recv_size = static_cast<std::uint32_t>(reply.size());
    result.recv_packet = shared_packet(reply);
    std::uint16_t id = 0;
    parse_reply("8.8.8.8", sample_time, result.recv_packet, id, result.question_list,
                result.answer_list, result.authority_list, result.additions_list);
    return result;
}

// The first three cells of each CSV row: query, comment, status.
std::vector<std::string> row_heads(const std::string& text) {
    std::vector<std::string> heads;
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t end = text.find("\r\n", pos);
        std::string line = text.substr(pos, end - pos);
        std::size_t third = line.find(',', line.find(',') + 1);
        heads.push_back(line.substr(0, line.find(',', third + 1)));
        pos = end + 2;
    }
    return heads;
}

const byte_list two_answers = {
    0x2a, 0x00, 0x81, 0x80, 0x00, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x00,  // QD 1, AN 2
    0x01, 'a', 0x01, 'b', 0x00, 0x00, 0x01, 0x00, 0x01,                       // a.b. A IN
    0xc0, 0x0c, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00, 0x01, 0x2c, 0x00, 0x04,  // a.b. A IN 300
    1, 2, 3, 4,
    0xc0, 0x0c, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00, 0x01, 0x2c, 0x00, 0x04,  // a.b. A IN 300
    5, 6, 7, 8,
};

const byte_list name_error = {
    0x2a, 0x00, 0x81, 0x83, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00,  // NXDOMAIN, QD 1, NS 1
    0x01, 'a', 0x01, 'b', 0x00, 0x00, 0x01, 0x00, 0x01,                       // a.b. A IN
    0xc0, 0x0e, 0x00, 0x06, 0x00, 0x01, 0x00, 0x00, 0x01, 0x2c, 0x00, 0x1b,  // b. SOA IN 300
    0x02, 'n', 's', 0xc0, 0x0e,                                               // ns.b.
    0xc0, 0x0e,                                                               // b.
    0, 0, 0, 1, 0, 0, 0x1c, 0x20, 0, 0, 0x0e, 0x10, 0, 0x12, 0x75, 0, 0, 0, 1, 0x2c,
};

const byte_list echo_only = {
    0x2a, 0x00, 0x81, 0x80, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // QD 1
    0x01, 'a', 0x01, 'b', 0x00, 0x00, 0x01, 0x00, 0x01,                       // a.b. A IN
};

const byte_list stops_halfway = {
    0x2a, 0x00, 0x81, 0x80, 0x00, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01,  // QD 1, AN 2, AR 1
    0x01, 'a', 0x01, 'b', 0x00, 0x00, 0x01, 0x00, 0x01,                       // a.b. A IN
    0xc0, 0x0c, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00, 0x01, 0x2c, 0x00, 0x04,  // a.b. A IN 300
    1, 2, 3, 4,
    0xc0, 0x0c, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00, 0x01, 0x2c, 0x00, 0x40,  // RDLENGTH 64 of 4
    5, 6, 7, 8,
};

const byte_list no_question = {
    0x2a, 0x00, 0x81, 0x80, 0x00, 0x00, 0x00, 0x01, 0x00, 0x01, 0x00, 0x01,  // AN 1, NS 1, AR 1
    0x01, 'a', 0x00, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00, 0x01, 0x2c, 0x00, 0x04,  // a. A
    1, 2, 3, 4,
    0x01, 'n', 0x00, 0x00, 0x02, 0x00, 0x01, 0x00, 0x00, 0x01, 0x2c, 0x00, 0x02,  // n. NS
    0xc0, 0x0c,                                                                   // -> a.
    0x01, 'x', 0x00, 0x00, 0x01, 0x00, 0x01, 0x00, 0x00, 0x01, 0x2c, 0x00, 0x04,  // x. A
    9, 9, 9, 9,
};

const byte_list not_a_reply = {
    0x2a, 0x00, 0x01, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // QR clear
    0x01, 'a', 0x01, 'b', 0x00, 0x00, 0x01, 0x00, 0x01,
};

TEST(ResultDispatch, StatusAndCommentOfEachRow) {
    struct dispatch_case {
        const char* name;
        std::uint16_t query_type;
        std::uint32_t sent;
        byte_list reply;
        std::vector<std::string> rows;
    };
    const dispatch_case cases[] = {
        {"nothing sent", 1, 0, {}, {"a.b,question,sock err"}},
        {"nothing came back", 1, 21, {}, {"a.b,question,timeout"}},
        {"not a reply", 1, 21, not_a_reply, {"a.b,question,unkresp"}},
        {"two answers", 1, 21, two_answers, {"a.b.,answer,success", "a.b.,answer,success"}},
        {"name error", 1, 21, name_error, {"a.b.,question,invalid", "b.,authority,success"}},
        {"name error to CNAME", 5, 21, name_error, {"b.,authority,success"}},
        {"echo only", 1, 21, echo_only, {"a.b.,question,invalid"}},
        {"echo only to CNAME", 5, 21, echo_only, {}},
        {"parse stopped halfway", 1, 21, stops_halfway, {"a.b.,answer,success"}},
        {"no question section", 1, 21, no_question,
         {"a.,answer,success", "n.,authority,success", "x.,additions,success"}},
    };
    for (const auto& c : cases) {
        input_params params;
        params.separator = ",";
        params.clash_char = ',';
        params.clash_subst = ' ';
        params.compact_columns = true;
        dns_result result = attempt(c.sent, c.reply);
        dns_entry query = built_query(c.query_type);
        string_output out;
        EXPECT_TRUE(report_result(out, result, query, params));
        std::vector<std::string> heads = row_heads(out.text());
        // The header line comes only in front of a row.
        EXPECT_EQ(params.show_header, c.rows.empty()) << c.name;
        if (!heads.empty()) heads.erase(heads.begin());
        EXPECT_EQ(heads, c.rows) << c.name;
    }
}

TEST(ResultDispatch, RowOfTheBuiltQueryHasNoData) {
    input_params params;
    params.separator = ",";
    params.compact_columns = true;
    params.show_header = false;
    dns_result result = attempt(21, {});
    dns_entry query = built_query(1);
    string_output out;
    report_result(out, result, query, params);
    EXPECT_EQ(out.text(),
              "a.b,question,timeout,2a,8.8.8.8,2026-11-19, 09:05:07.042,1,A,1,0,0,  <none>\r\n");
}

TEST(ResultDispatch, XmlRowsCarryNoComment) {
    input_params params;
    params.xml_output = true;
    dns_result result = attempt(21, name_error);
    dns_entry query = built_query(1);
    string_output out;
    report_result(out, result, query, params);
    const std::string& text = out.text();
    const std::size_t first = text.find("<status>invalid</status>");
    EXPECT_NE(first, std::string::npos);
    EXPECT_NE(text.find("<status>success</status>", first), std::string::npos);
    EXPECT_EQ(text.find("authority"), std::string::npos);
    EXPECT_EQ(text.find("query "), std::string::npos);  // no text header in XML
}

}  // namespace

// Whole rows of each record type are the interop tests'; these are the edges.
#include "report/text_report.h"

#include <tuple>

#include "dns/dns_result.h"
#include "dns/reply_parser.h"
#include "driver/tool_options.h"
#include "report/xml_report.h"
#include "support/fixtures.h"
#include "timefmt/formats.h"

namespace {

using test_support::record_entry;

// One row, behind the header line when `header`; `csv` sets params as -csv does.
std::string row_of(const dns_entry& entry, input_params& params, bool csv = false, bool header = false,
                   std::string_view status = "success") {
    if (csv) params.separator = ",", params.clash_char = ',', params.clash_subst = ' ', params.compact_columns = true;
    const report_settings settings = make_report_settings(params);
    text_report writer(settings);
    if (!header) writer.header_done();
    test_support::string_output out;
    row_workspace work;
    writer.write_row(out, entry, "answer", status, work);
    return out.text();
}

TEST(TextReport, WidthsAndLayouts) {
    input_params params, compact;
    params.server = "192.168.100.200";
    params.time_format = "hh:mm:ss";
    compile_formats(params.format_word, params.date_format, params.time_format, false);
    dns_entry entry = record_entry(1, {1, 2, 3, 4});
    entry.dns_server = params.server;
    entry.packet_id = 0xbeef;
    entry.ttl_secs = 4294967295;
    // "sock err" and the TTL run past their places: cells are never cut.
    const std::string tail =
        "| id   | DNSserv         | date       |  time-UTC | type | tname  | class | ttl    | size | data\r\n"
        "a.b.                                     | answer    | sock err | beef | 192.168.100.200 | "
        "2026-11-19 |  09:05:07 |    1 |      A |     1 | 4294967295 |    4 | 1.2.3.4\r\n";
    EXPECT_TRUE(row_of(entry, params, false, true, "sock err").ends_with(tail));
    compact.pair_blank = false;  // -csv -no_whitespace
    EXPECT_EQ(row_of(record_entry(1, {1, 2, 3, 4}), compact, true),
              "a.b.,answer,success,2a,8.8.8.8,2026-11-19,09:05:07.042,1,A,1,300,4,1.2.3.4\r\n");
    for (bool csv : {false, true}) {  // the clash character is replaced in the query only
        input_params clash;
        entry.query = "a|b,c.";
        entry.dns_server = "1|2,3";
        const std::string text = row_of(entry, clash, csv);
        EXPECT_TRUE(text.starts_with(csv ? "a|b c.," : "a;b,c. ")) << text;
        EXPECT_NE(text.find("1|2,3"), std::string::npos) << "the server cell is left as it is: " << text;
    }
}

TEST(TextReport, DataThatDoesntReadAsItsType) {
    // Type, RDATA, in the answer section, data cell. The lengths in the RDATA claim more than there is, and a
    // name runs off the packet or points at itself.
    const std::tuple<std::uint16_t, byte_list, bool, std::string> cases[] = {
        {1, {1, 2, 3, 4, 5, 10}, true, "01 02 03 04 05 0a"},
        {1, {}, true, "  <none>"},
        {28, {0xff}, true, ""},
        {15, {0, 10, 5, 'm'}, true, "10; 00 0a 05 6d"},
        {15, {0x07}, true, "07"},
        {5, {0xc0, 0x21}, true, "c0 21"},
        {6, {0xc0, 12, 0xc0, 12, 0, 1}, true, "c0 0c c0 0c 00 01"},
        {12, {3, 'x', 'y'}, true, "03 78 79"},
        {16, {5, 'a', '\r', '\n', 'b', ','}, true, "\005a  b,\r\n"},  // then an empty line
        {16, {1, 'z'}, false, "\r\n"},
        {99, {0xde, 0xad}, true, "de ad"},
    };
    for (const auto& [type, rdata, answer, data] : cases) {
        input_params padded;
        EXPECT_TRUE(row_of(record_entry(type, rdata, answer), padded).ends_with(" | " + data + "\r\n")) << type;
    }
}

// Regression: an MX record of one byte inside a reply takes its preference's
// second byte, and its name, from the record behind it; only at the very end
// of the message does the row fall back to hex. Both forms read alike.
TEST(TextReport, MxShorterThanItsPreferenceInsideAReply) {
    // What follows the MX record, its data cell, the XML attributes.
    const std::tuple<const char*, byte_list, const char*, const char*> cases[] = {
        {"root-owned A behind it",
         {0, /* 34: */ 0, 1, 0, 1, 0, 0, 0, 60, 0, 4, 1, 2, 3, 4},
         "1280; ",
         " preference=\"1280\" mx_server=\"\""},  // the name at 35 is the root
        {"compressed owner behind it",
         {0xc0, 12, 0, 1, 0, 1, 0, 0, 0, 60, 0, 4, 1, 2, 3, 4},
         "1472; 05",
         " preference=\"1472\" mx_server=\"\""},  // 0x05c0; the name at 35 runs off
    };
    for (const auto& [what, next, data, attributes] : cases) {
        const shared_packet message(test_support::join({
            {0x2a, 0x00, 0x81, 0x80, 0, 1, 0, 2, 0, 0, 0, 0},  // ID 42, QR; one question, two answers
            {1, 'a', 1, 'b', 0, 0, 15, 0, 1},                  // 12: a.b. MX IN
            {0xc0, 12, 0, 15, 0, 1, 0, 0, 0, 60, 0, 1, 0x05},  // 21: a.b. MX IN 60, RDLENGTH 1, at 33: 05
            next,                                              // 34: the second answer
        }));
        dns_result r;
        std::uint16_t id = 0;
        parse_reply("8.8.8.8", 0, message, id, r.question_list, r.answer_list, r.authority_list, r.additions_list);
        ASSERT_EQ(r.answer_list.size(), 2u) << what;
        input_params padded;
        EXPECT_TRUE(row_of(r.answer_list[0], padded).ends_with(" |    1 | " + std::string(data) + "\r\n")) << what;
        test_support::string_output xml;
        row_workspace work;
        write_xml_entry(r.answer_list[0], xml, 0, "success", work);
        EXPECT_NE(xml.text().find(std::string("<translated_data ") + attributes + ">"), std::string::npos) << what;
    }
}

}  // namespace

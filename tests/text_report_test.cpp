#include "report/text_report.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/fixtures.h"
#include "timefmt/formats.h"

namespace {

using test_support::record_entry;

void use_csv(input_params& params) {
    params.separator = ",";
    params.clash_char = ',';
    params.clash_subst = ' ';
    params.compact_columns = true;
}

std::string rows_of(dns_entry entry, input_params& params, int count = 1, std::string_view status = "success") {
    test_support::string_output out;
    while (count-- > 0) write_text_entry(entry, out, "answer", status, params);
    return out.text();
}

TEST(TextReport, SampleLinesAndOneHeader) {
    const std::string row = "a.b.                                     | answer    | success | 002a | 8.8.8.8 | "
                            "2026-11-19 |  09:05:07.042 |    1 |      A |     1 |    300 |    4 | 1.2.3.4\r\n";
    input_params params;
    EXPECT_EQ(rows_of(record_entry(1, {1, 2, 3, 4}), params, 2),
              "query                                    | comment   | status  | id   | DNSserv | "
              "date       |  time-UTC     | type | tname  | class | ttl    | size | data\r\n" + row + row);
    EXPECT_FALSE(params.show_header);
    input_params csv;
    use_csv(csv);
    EXPECT_EQ(rows_of(record_entry(1, {1, 2, 3, 4}), csv),
              "query,comment,status,id,DNSserv,date, time-UTC,type,tname,class,ttl,size,data\r\n"
              "a.b.,answer,success,2a,8.8.8.8,2026-11-19, 09:05:07.042,1,A,1,300,4,1.2.3.4\r\n");
    csv.pair_blank = false;  // -csv -no_whitespace
    EXPECT_EQ(rows_of(record_entry(1, {1, 2, 3, 4}), csv),
              "a.b.,answer,success,2a,8.8.8.8,2026-11-19,09:05:07.042,1,A,1,300,4,1.2.3.4\r\n");
}

TEST(TextReport, WidthsFollowServerAndTimeFormat) {
    input_params params;
    params.server = "192.168.100.200";
    params.time_format = "hh:mm:ss";
    compile_formats(params.format_word, params.date_format, params.time_format, false);
    dns_entry entry = record_entry(1, {1, 2, 3, 4});
    entry.dns_server = params.server;
    entry.packet_id = 0xbeef;
    entry.ttl_secs = 4294967295;
    // "sock err" and the TTL run past their places: cells are never cut.
    const std::string expected =
        "| id   | DNSserv         | date       |  time-UTC | type | tname  | class | ttl    | size | data\r\n"
        "a.b.                                     | answer    | sock err | beef | 192.168.100.200 | 2026-11-19 |"
        "  09:05:07 |    1 |      A |     1 | 4294967295 |";
    const std::string text = rows_of(entry, params, 1, "sock err");
    EXPECT_EQ(text.substr(text.find("| id"), expected.size()), expected);
}

TEST(TextReport, ClashCharacterReplacedInQueryOnly) {
    const std::tuple<bool, char, std::string, std::string> cases[] = {  // CSV, clash character, query, shown
        {false, '|', "a|b.", "a;b. "}, {true, ',', "a,b c.", "a b c.,"}, {false, 0, "a|b.", "a|b. "}};
    for (const auto& [csv, clash_char, query, shown] : cases) {
        input_params params;
        params.show_header = false;
        if (csv) use_csv(params);
        params.clash_char = clash_char;
        dns_entry entry = record_entry(1, {1, 2, 3, 4});
        entry.query = query;
        entry.dns_server = "1|2";
        const std::string text = rows_of(entry, params);
        EXPECT_EQ(text.substr(0, shown.size()), shown) << query;
        EXPECT_NE(text.find("1|2"), std::string::npos) << query;
    }
}

// Everything behind the twelfth separator: the data cell and its line ends.
std::string data_part(const std::string& line, const std::string& separator) {
    std::size_t pos = 0;
    for (int i = 0; i < 12; ++i) pos = line.find(separator, pos) + separator.size();
    return line.substr(pos);
}

TEST(TextReport, DataCellOfEachRecordType) {
    // Type, RDATA, in the answer section, data cell (padded; compact has no blank behind ";").
    const std::tuple<std::uint16_t, byte_list, bool, std::string> cases[] = {
        {1, {1, 2, 3, 4}, true, "1.2.3.4"}, {1, {1, 2, 3, 4, 5, 10}, true, "01 02 03 04 05 0a"},  // A of 6 bytes
        {1, {}, true, "  <none>"}, {28, {0xff}, true, ""},
        {28, {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, true, "2001:db8:0:0:0:0:0:1"},
        {15, {0, 10, 4, 'm', 'a', 'i', 'l', 0xc0, 12}, true, "10; mail.a.b."},
        {15, {0, 10, 5, 'm'}, true, "10; 00 0a 05 6d"},  // label of 5 with 1 byte left
        {15, {0x07}, true, "07"}, {2, {2, 'n', 's', 0xc0, 12}, true, "ns.a.b."},  // no whole preference; NS
        {5, {0xc0, 0x21}, true, "c0 21"}, {12, {3, 'x', 'y'}, true, "03 78 79"},   // points at itself; cut short
        {6, {2, 'n', 's', 0xc0, 12, /* RNAME */ 0xc0, 12, /* serial, refresh, retry, expire, minimum */
             0, 0, 0, 1, 0, 0, 0x1c, 0x20, 0, 0, 0x0e, 0x10, 0, 0x12, 0x75, 0, 0, 0, 1, 0x2c},
         true, "ns.a.b.; a.b.; 0x00000001; 0x00001c20; 0x00000e10; 0x00127500; 0x0000012c"},
        {6, {0xc0, 12, 0xc0, 12, 0, 1}, true, "c0 0c c0 0c 00 01"},  // SOA without its numbers
        {16, {5, 'a', '\r', '\n', 'b', ','}, true, "\x05" "a  b,\r\n"},  // then an empty line
        {16, {1, 'z'}, false, "\r\n"}, {99, {0xde, 0xad}, true, "de ad"},
    };
    for (const auto& [type, rdata, answer, data] : cases) {
        input_params padded, compact;
        padded.show_header = compact.show_header = false;
        use_csv(compact);
        std::string tight = data;
        for (std::size_t at; (at = tight.find("; ")) != std::string::npos;) tight.erase(at + 1, 1);
        EXPECT_EQ(data_part(rows_of(record_entry(type, rdata, answer), padded), " | "), data + "\r\n");
        EXPECT_EQ(data_part(rows_of(record_entry(type, rdata, answer), compact), ","), tight + "\r\n");
    }
}

TEST(TextReport, DataNeverReadPastThePacket) {
    // Lengths that claim more than the packet holds (the parser would reject
    // them; the writer must cope all the same).
    input_params params;
    params.show_header = false;
    for (std::uint16_t type : {1, 28, 15, 2, 6, 16, 99}) {
        dns_entry entry = record_entry(type, {0x01});
        entry.data_length = 9;
        EXPECT_NE(rows_of(entry, params).find("|    9 | "), std::string::npos) << type;
        entry.data_offset = 5000;
        rows_of(entry, params);
    }
}

}  // namespace

#include "report/text_report.h"

#include <gtest/gtest.h>

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
    const struct {
        bool csv;
        char clash_char;
        std::string query, shown;
    } cases[] = {{false, '|', "a|b.", "a;b. "}, {true, ',', "a,b c.", "a b c.,"}, {false, 0, "a|b.", "a|b. "}};
    for (const auto& c : cases) {
        input_params params;
        params.show_header = false;
        if (c.csv) use_csv(params);
        params.clash_char = c.clash_char;
        dns_entry entry = record_entry(1, {1, 2, 3, 4});
        entry.query = c.query;
        entry.dns_server = "1|2";
        const std::string text = rows_of(entry, params);
        EXPECT_EQ(text.substr(0, c.shown.size()), c.shown) << c.query;
        EXPECT_NE(text.find("1|2"), std::string::npos) << c.query;
    }
}

// Everything behind the twelfth separator: the data cell and its line ends.
std::string data_part(const std::string& line, const std::string& separator) {
    std::size_t pos = 0;
    for (int i = 0; i < 12; ++i) pos = line.find(separator, pos) + separator.size();
    return line.substr(pos);
}

TEST(TextReport, DataCellOfEachRecordType) {
    const struct {
        std::uint16_t type;
        byte_list rdata;
        std::string data;  // padded; the compact layout has no blank behind ";"
        bool answer = true;
    } cases[] = {
        {1, {1, 2, 3, 4}, "1.2.3.4"},
        {1, {1, 2, 3, 4, 5, 10}, "01 02 03 04 05 0a"},  // A of 6 bytes
        {1, {}, "  <none>"},
        {28, {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, "2001:db8:0:0:0:0:0:1"},
        {28, {0xff}, ""},
        {15, {0, 10, 4, 'm', 'a', 'i', 'l', 0xc0, 12}, "10; mail.a.b."},
        {15, {0, 10, 5, 'm'}, "10; 00 0a 05 6d"},  // label of 5 with 1 byte left
        {15, {0x07}, "07"},                          // no whole preference
        {2, {2, 'n', 's', 0xc0, 12}, "ns.a.b."},
        {5, {0xc0, 0x21}, "c0 21"},  // points at itself
        {12, {3, 'x', 'y'}, "03 78 79"},
        {6, {2, 'n', 's', 0xc0, 12, /* RNAME */ 0xc0, 12, /* serial, refresh, retry, expire, minimum */
             0, 0, 0, 1, 0, 0, 0x1c, 0x20, 0, 0, 0x0e, 0x10, 0, 0x12, 0x75, 0, 0, 0, 1, 0x2c},
         "ns.a.b.; a.b.; 0x00000001; 0x00001c20; 0x00000e10; 0x00127500; 0x0000012c"},
        {6, {0xc0, 12, 0xc0, 12, 0, 1}, "c0 0c c0 0c 00 01"},  // SOA without its numbers
        {16, {5, 'a', '\r', '\n', 'b', ','}, "\x05" "a  b,\r\n"},  // then an empty line
        {16, {1, 'z'}, "\r\n", false},  // TXT outside the answer section
        {99, {0xde, 0xad}, "de ad"},
    };
    for (const auto& c : cases) {
        input_params padded, compact;
        padded.show_header = compact.show_header = false;
        use_csv(compact);
        std::string data = c.data;
        for (std::size_t at; (at = data.find("; ")) != std::string::npos;) data.erase(at + 1, 1);
        EXPECT_EQ(data_part(rows_of(record_entry(c.type, c.rdata, c.answer), padded), " | "), c.data + "\r\n");
        EXPECT_EQ(data_part(rows_of(record_entry(c.type, c.rdata, c.answer), compact), ","), data + "\r\n");
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

#include "report/text_report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "timefmt/formats.h"
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

constexpr std::uint32_t rdata_offset = 33;

// A reply to "a.b. A IN" whose one record is of `type` and carries `rdata`.
// The record data sits at the very end, so a name that runs on falls off.
dns_entry record(std::uint16_t type, std::vector<std::uint8_t> rdata, bool answer = true) {
    byte_list packet = {
        0x2a, 0x00, 0x81, 0x80,  // ID 42 (low byte first), QR RD RA
        0x00, 0x01, 0x00, 0x01,  // QDCOUNT 1, ANCOUNT 1
        0x00, 0x00, 0x00, 0x00,  // NSCOUNT 0, ARCOUNT 0
        0x01, 'a', 0x01, 'b', 0x00,  // offset 12: a.b.
        0x00, 0x01, 0x00, 0x01,      // A IN
        0xc0, 0x0c,                  // offset 21: owner -> a.b.
        static_cast<std::uint8_t>(type >> 8), static_cast<std::uint8_t>(type),
        0x00, 0x01,                  // IN
        0x00, 0x00, 0x01, 0x2c,      // TTL 300
        static_cast<std::uint8_t>(rdata.size() >> 8), static_cast<std::uint8_t>(rdata.size()),
    };
    packet.insert(packet.end(), rdata.begin(), rdata.end());  // offset 33
    dns_entry entry;
    entry.packet = shared_packet(std::move(packet));
    entry.dns_server = "8.8.8.8";
    entry.query = "a.b.";
    entry.dns_type = type;
    entry.dns_class = 1;
    entry.ttl_secs = 300;
    entry.data_length = static_cast<std::uint16_t>(rdata.size());
    entry.data_offset = rdata_offset;
    entry.query_time = fields_to_ticks(2026, 11, 19, 9, 5, 7, 42);
    entry.packet_id = 42;
    entry.has_raw_data = answer;
    return entry;
}

void use_csv(input_params& params) {
    params.separator = ",";
    params.clash_char = ',';
    params.clash_subst = ' ';
    params.compact_columns = true;
}

std::string rows_of(dns_entry entry, input_params& params, int count = 1,
                    std::string_view status = "success") {
    string_output out;
    while (count-- > 0) write_text_entry(entry, out, "answer", status, params);
    return out.text();
}

// Everything behind the twelfth separator: the data cell and its line ends.
std::string data_part(const std::string& line, const std::string& separator) {
    std::size_t pos = 0;
    for (int i = 0; i < 12; ++i) pos = line.find(separator, pos) + separator.size();
    return line.substr(pos);
}

TEST(TextReport, SampleLinesAndOneHeader) {
    const std::string row =
        "a.b.                                     | answer    | success | 002a | 8.8.8.8 | "
        "2026-11-19 |  09:05:07.042 |    1 |      A |     1 |    300 |    4 | 1.2.3.4\r\n";
    input_params params;
    EXPECT_EQ(rows_of(record(1, {1, 2, 3, 4}), params, 2),
              "query                                    | comment   | status  | id   | DNSserv | "
              "date       |  time-UTC     | type | tname  | class | ttl    | size | data\r\n" +
                  row + row);
    EXPECT_FALSE(params.show_header);

    input_params csv;
    use_csv(csv);
    EXPECT_EQ(rows_of(record(1, {1, 2, 3, 4}), csv),
              "query,comment,status,id,DNSserv,date, time-UTC,type,tname,class,ttl,size,data\r\n"
              "a.b.,answer,success,2a,8.8.8.8,2026-11-19, 09:05:07.042,1,A,1,300,4,1.2.3.4\r\n");

    csv.pair_blank = false;  // -csv -no_whitespace
    EXPECT_EQ(rows_of(record(1, {1, 2, 3, 4}), csv),
              "a.b.,answer,success,2a,8.8.8.8,2026-11-19,09:05:07.042,1,A,1,300,4,1.2.3.4\r\n");
}

TEST(TextReport, WidthsFollowServerAndTimeFormat) {
    input_params params;
    params.server = "192.168.100.200";
    params.time_format = "hh:mm:ss";
    compile_formats(params.format_word, params.date_format, params.time_format, false);
    dns_entry entry = record(1, {1, 2, 3, 4});
    entry.dns_server = params.server;
    entry.packet_id = 0xbeef;
    // "sock err" runs one past its 7 places: cells are never cut.
    const std::string expected =
        "| id   | DNSserv         | date       |  time-UTC | type | tname  | class | ttl    | "
        "size | data\r\na.b.                                     | answer    | sock err | beef | "
        "192.168.100.200 | 2026-11-19 |  09:05:07 |";
    const std::string text = rows_of(entry, params, 1, "sock err");
    EXPECT_EQ(text.substr(text.find("| id"), expected.size()), expected);
}

TEST(TextReport, ClashCharacterReplacedInQueryOnly) {
    struct clash_case {
        bool csv;
        char clash_char;
        std::string query;
        std::string shown;
    };
    const clash_case cases[] = {
        {false, '|', "a|b.", "a;b. "},
        {true, ',', "a,b c.", "a b c.,"},
        {false, 0, "a|b.", "a|b. "},
    };
    for (const auto& c : cases) {
        input_params params;
        params.show_header = false;
        if (c.csv) use_csv(params);
        params.clash_char = c.clash_char;
        dns_entry entry = record(1, {1, 2, 3, 4});
        entry.query = c.query;
        entry.dns_server = "1|2";
        string_output out;
        write_text_entry(entry, out, "answer", "success", params);
        EXPECT_EQ(out.text().substr(0, c.shown.size()), c.shown) << c.query;
        EXPECT_NE(out.text().find("1|2"), std::string::npos) << c.query;
        EXPECT_EQ(entry.query, c.shown.substr(0, c.query.size())) << c.query;
    }
}

TEST(TextReport, DataCellOfEachRecordType) {
    struct data_case {
        const char* name;
        std::uint16_t type;
        std::vector<std::uint8_t> rdata;
        std::string padded;
        std::string compact;
        bool answer = true;
    };
    const data_case cases[] = {
        {"A", 1, {1, 2, 3, 4}, "1.2.3.4", "1.2.3.4"},
        {"A of 6 bytes", 1, {1, 2, 3, 4, 5, 10}, "01 02 03 04 05 0a", "01 02 03 04 05 0a"},
        {"length 0", 1, {}, "  <none>", "  <none>"},
        {"AAAA", 28,
         {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x00, 0x01},
         "2001:db8:0:0:0:0:0:1", "2001:db8:0:0:0:0:0:1"},
        {"AAAA of 1 byte", 28, {0xff}, "", ""},
        {"MX", 15,
         {0x00, 0x0a,                  // preference 10
          0x04, 'm', 'a', 'i', 'l',    // mail
          0xc0, 0x0c},                 // -> a.b.
         "10; mail.a.b.", "10;mail.a.b."},
        {"MX with a name off the end", 15,
         {0x00, 0x0a,                  // preference 10
          0x05, 'm'},                  // label of 5 with 1 byte left
         "10; 00 0a 05 6d", "10;00 0a 05 6d"},
        {"MX without a whole preference", 15, {0x07}, "07", "07"},
        {"NS through a pointer", 2,
         {0x02, 'n', 's', 0xc0, 0x0c},  // ns -> a.b.
         "ns.a.b.", "ns.a.b."},
        {"CNAME pointing at itself", 5, {0xc0, 0x21}, "c0 21", "c0 21"},
        {"PTR cut short", 12, {0x03, 'x', 'y'}, "03 78 79", "03 78 79"},
        {"SOA", 6,
         {0x02, 'n', 's', 0xc0, 0x0c,  // MNAME ns.a.b.
          0xc0, 0x0c,                  // RNAME a.b.
          0x00, 0x00, 0x00, 0x01,      // SERIAL 1
          0x00, 0x00, 0x1c, 0x20,      // REFRESH 7200
          0x00, 0x00, 0x0e, 0x10,      // RETRY 3600
          0x00, 0x12, 0x75, 0x00,      // EXPIRE 1209600
          0x00, 0x00, 0x01, 0x2c},     // MINIMUM 300
         "ns.a.b.; a.b.; 0x00000001; 0x00001c20; 0x00000e10; 0x00127500; 0x0000012c",
         "ns.a.b.;a.b.;0x00000001;0x00001c20;0x00000e10;0x00127500;0x0000012c"},
        {"SOA without its numbers", 6, {0xc0, 0x0c, 0xc0, 0x0c, 0x00, 0x01},
         "c0 0c c0 0c 00 01", "c0 0c c0 0c 00 01"},
        {"TXT with CR LF", 16, {0x05, 'a', '\r', '\n', 'b', ','},
         "\x05" "a  b,\r\n", "\x05" "a  b,\r\n"},
        {"TXT outside the answer section", 16, {0x01, 'z'}, "\r\n", "\r\n", false},
        {"unknown type", 99, {0xde, 0xad}, "de ad", "de ad"},
    };
    for (const auto& c : cases) {
        input_params padded;
        padded.show_header = false;
        input_params compact;
        compact.show_header = false;
        use_csv(compact);
        EXPECT_EQ(data_part(rows_of(record(c.type, c.rdata, c.answer), padded), " | "),
                  c.padded + "\r\n")
            << c.name;
        EXPECT_EQ(data_part(rows_of(record(c.type, c.rdata, c.answer), compact), ","),
                  c.compact + "\r\n")
            << c.name;
    }
}

TEST(TextReport, DataNeverReadPastThePacket) {
    // Lengths that claim more than the packet holds (the parser would reject
    // them; the writer must cope all the same).
    input_params params;
    params.show_header = false;
    for (std::uint16_t type : {1, 28, 15, 2, 6, 16, 99}) {
        dns_entry entry = record(type, {0x01});
        entry.data_length = 9;
        std::string text = rows_of(entry, params);
        EXPECT_NE(text.find("|    9 | "), std::string::npos) << type;
        entry.data_offset = 5000;
        rows_of(entry, params);
    }
}

}  // namespace

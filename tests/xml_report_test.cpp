#include "report/xml_report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

// A reply to "a.b. A IN" whose one record is of `type` and carries `rdata`,
// which sits at the very end of the message (offset 33).
dns_entry record(std::uint16_t type, std::vector<std::uint8_t> rdata) {
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
    packet.insert(packet.end(), rdata.begin(), rdata.end());
    dns_entry entry;
    entry.packet = shared_packet(std::move(packet));
    entry.dns_server = "8.8.8.8";
    entry.query = "a.b.";
    entry.dns_type = type;
    entry.dns_class = 1;
    entry.ttl_secs = 300;
    entry.data_length = static_cast<std::uint16_t>(rdata.size());
    entry.data_offset = 33;
    entry.query_time = fields_to_ticks(2026, 11, 19, 9, 5, 7, 42);
    entry.packet_id = 42;
    entry.has_raw_data = false;  // XML reads the packet, in every section
    return entry;
}

std::string xml_of(const dns_entry& entry, const input_params& params = input_params{},
                   std::string_view status = "success") {
    string_output out;
    write_xml_entry(entry, out, params, status);
    return out.text();
}

// From <raw_data_hex> to the end of the line.
std::string tail_of(const std::string& line) { return line.substr(line.find("<raw_data_hex>")); }

TEST(XmlReport, SampleLineByteForByte) {
    EXPECT_EQ(xml_of(record(1, {1, 2, 3, 4})),
              "<data_entry><query>a.b.</query><status>success</status><packet_id>002a</packet_id>"
              "<dns_server>8.8.8.8</dns_server><query_date_utc>2026-11-19</query_date_utc>"
              "<query_time_utc>09:05:07.042</query_time_utc><dns_type>1</dns_type>"
              "<dns_type_name>A</dns_type_name><dns_class>1</dns_class><ttl_secs>300</ttl_secs>"
              "<data_length>4</data_length><raw_data_hex>01 02 03 04</raw_data_hex>"
              "<translated_data  ipv4_addr=\"1.2.3.4\"></translated_data></data_entry>\r\n");
}

TEST(XmlReport, TranslatedDataOfEachRecordType) {
    struct xml_case {
        const char* name;
        std::uint16_t type;
        std::vector<std::uint8_t> rdata;
        std::string tail;
    };
    const std::string end = "></translated_data></data_entry>\r\n";
    const xml_case cases[] = {
        {"A of 6 bytes", 1, {1, 2, 3, 4, 5, 6},
         "<raw_data_hex>01 02 03 04 05 06</raw_data_hex><translated_data " + end},
        {"AAAA", 28, {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x00, 0x01},
         "<raw_data_hex>20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01</raw_data_hex>"
         "<translated_data  ipv6_addr=\"2001:db8::1\"" + end},
        {"AAAA of length 0", 28, {},
         "<raw_data_hex></raw_data_hex><translated_data  ipv6_addr=\"\"" + end},
        {"MX", 15, {0x00, 0x0a, 0x04, 'm', 'a', 'i', 'l', 0xc0, 0x0c},  // 10 mail -> a.b.
         "<raw_data_hex>00 0a 04 6d 61 69 6c c0 0c</raw_data_hex>"
         "<translated_data  preference=\" 10\" mx_server=\"mail.a.b.\"" + end},
        {"MX with a broken name", 15, {0x03, 0xe8, 0x01, 'm', 0x05, 'x'},  // 1000, m, runs off
         "<raw_data_hex>03 e8 01 6d 05 78</raw_data_hex>"
         "<translated_data  preference=\"1000\" mx_server=\"\"" + end},
        {"MX of 1 byte at the end", 15, {0x01},  // the missing byte reads 0
         "<raw_data_hex>01</raw_data_hex>"
         "<translated_data  preference=\"256\" mx_server=\"\"" + end},
        {"MX of length 0", 15, {}, "<raw_data_hex></raw_data_hex><translated_data " + end},
        {"NS", 2, {0x02, 'n', 's', 0xc0, 0x0c},
         "<raw_data_hex>02 6e 73 c0 0c</raw_data_hex>"
         "<translated_data  domain_name=\"ns.a.b.\"" + end},
        {"PTR with a pointer loop", 12, {0xc0, 0x21},
         "<raw_data_hex>c0 21</raw_data_hex><translated_data  domain_name=\"\"" + end},
        {"SOA", 6,
         {0x02, 'n', 's', 0xc0, 0x0c,  // MNAME ns.a.b.
          0xc0, 0x0c,                  // RNAME a.b.
          0x00, 0x00, 0xbe, 0xef,      // SERIAL
          0x00, 0x00, 0x1c, 0x20,      // REFRESH 7200
          0x00, 0x00, 0x0e, 0x10,      // RETRY 3600
          0x00, 0x12, 0x75, 0x00,      // EXPIRE 1209600
          0x00, 0x00, 0x01, 0x2c},     // MINIMUM 300
         "<raw_data_hex>02 6e 73 c0 0c c0 0c 00 00 be ef 00 00 1c 20 00 00 0e 10 00 12 75 00 00 00 "
         "01 2c</raw_data_hex><translated_data  domain_name=\"ns.a.b.\" admin_mailbox=\"a.b.\" "
         "serial_num=\"0xbeef\" refresh_sec=\"7200\" retry_sec=\"3600\" expire_sec=\"1209600\" "
         "min_sec=\"300\"" + end},
        {"SOA cut short", 6, {0xc0, 0x0c, 0xc0, 0x0c},
         "<raw_data_hex>c0 0c c0 0c</raw_data_hex><translated_data " + end},
        {"TXT", 16, {0x02, 'h', '<'},
         "<raw_data_hex>02 68 3c</raw_data_hex><translated_data " + end},
    };
    for (const auto& c : cases)
        EXPECT_EQ(tail_of(xml_of(record(c.type, c.rdata))), c.tail) << c.name;
}

TEST(XmlReport, RowOfTheBuiltQuery) {
    // A timeout row: no data, no replacement in the query, and for a PTR
    // query an empty name rather than one read from the query packet.
    dns_entry query;
    query.packet = shared_packet(byte_list{0x2a, 0x00, 0x01, 0x00});  // first bytes of a query
    query.query = "a|b";
    query.dns_type = 12;
    query.dns_class = 1;
    const std::string line = xml_of(query, input_params{}, "timeout");
    EXPECT_NE(line.find("<query>a|b</query><status>timeout</status>"), std::string::npos);
    EXPECT_NE(line.find("<ttl_secs>0</ttl_secs><data_length>0</data_length><raw_data_hex>"
                        "</raw_data_hex><translated_data  domain_name=\"\"></translated_data>"),
              std::string::npos);
}

TEST(XmlReport, FormatIpv6FoldsTheFirstZeroRun) {
    struct ipv6_case {
        std::vector<std::uint16_t> groups;
        std::string text;
    };
    const ipv6_case cases[] = {
        {{0, 0, 0, 0, 0, 0, 0, 0}, "::"},
        {{0, 0, 0, 0, 0, 0, 0, 1}, "::1"},
        {{0x2001, 0xdb8, 0, 0, 0, 0, 0, 1}, "2001:db8::1"},
        {{1, 0, 2, 0, 3, 4, 5, 6}, "1::2:0:3:4:5:6"},
        {{1, 0, 0, 2, 0, 0, 0, 0}, "1::2:0:0:0:0"},  // first run, not the longest
        {{1, 2, 3, 4, 5, 6, 7, 0}, "1:2:3:4:5:6:7::"},
        {{0xabcd}, "abcd"},
        {{}, ""},
    };
    for (const auto& c : cases) {
        std::vector<std::uint8_t> bytes;
        for (std::uint16_t g : c.groups) {
            bytes.push_back(static_cast<std::uint8_t>(g >> 8));
            bytes.push_back(static_cast<std::uint8_t>(g));
        }
        if (bytes.empty()) bytes.push_back(0xff);  // one odd byte: no group
        std::string text = "old";
        EXPECT_TRUE(format_ipv6(bytes.data(), bytes.size(), text));
        EXPECT_EQ(text, c.text);
    }
    std::string text = "old";
    const std::uint8_t one = 1;
    EXPECT_FALSE(format_ipv6(&one, 0, text));
    EXPECT_FALSE(format_ipv6(nullptr, 16, text));
    EXPECT_EQ(text, "old");
}

}  // namespace

#include "report/xml_report.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/fixtures.h"

namespace {

std::string xml_of(const dns_entry& entry, std::string_view status = "success") {
    test_support::string_output out;
    write_xml_entry(entry, out, input_params{}, status);
    return out.text();
}

TEST(XmlReport, SampleLineByteForByte) {
    EXPECT_EQ(xml_of(test_support::record_entry(1, {1, 2, 3, 4}, false)),
              "<data_entry><query>a.b.</query><status>success</status><packet_id>002a</packet_id>"
              "<dns_server>8.8.8.8</dns_server><query_date_utc>2026-11-19</query_date_utc>"
              "<query_time_utc>09:05:07.042</query_time_utc><dns_type>1</dns_type>"
              "<dns_type_name>A</dns_type_name><dns_class>1</dns_class><ttl_secs>300</ttl_secs>"
              "<data_length>4</data_length><raw_data_hex>01 02 03 04</raw_data_hex>"
              "<translated_data  ipv4_addr=\"1.2.3.4\"></translated_data></data_entry>\r\n");
}

TEST(XmlReport, TranslatedDataOfEachRecordType) {
    // Type, RDATA, the line from behind <raw_data_hex> to the end of the translated data's start tag.
    const std::tuple<std::uint16_t, byte_list, std::string> cases[] = {
        {1, {1, 2, 3, 4, 5, 6}, "01 02 03 04 05 06</raw_data_hex><translated_data "},
        {28, {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
         "20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01</raw_data_hex><translated_data  ipv6_addr=\"2001:db8::1\""},
        {28, {}, "</raw_data_hex><translated_data  ipv6_addr=\"\""},
        {15, {0, 10, 4, 'm', 'a', 'i', 'l', 0xc0, 12},
         "00 0a 04 6d 61 69 6c c0 0c</raw_data_hex><translated_data  preference=\" 10\" mx_server=\"mail.a.b.\""},
        {15, {0x03, 0xe8, 1, 'm', 5, 'x'},  // 1000, then a name that runs off
         "03 e8 01 6d 05 78</raw_data_hex><translated_data  preference=\"1000\" mx_server=\"\""},
        {15, {0x01}, "01</raw_data_hex><translated_data  preference=\"256\" mx_server=\"\""},  // missing byte reads 0
        {15, {}, "</raw_data_hex><translated_data "},
        {2, {2, 'n', 's', 0xc0, 12}, "02 6e 73 c0 0c</raw_data_hex><translated_data  domain_name=\"ns.a.b.\""},
        {12, {0xc0, 0x21}, "c0 21</raw_data_hex><translated_data  domain_name=\"\""},  // pointer loop
        {6, {2, 'n', 's', 0xc0, 12, /* RNAME */ 0xc0, 12, /* serial, refresh, retry, expire, minimum */
             0, 0, 0xbe, 0xef, 0, 0, 0x1c, 0x20, 0, 0, 0x0e, 0x10, 0, 0x12, 0x75, 0, 0, 0, 1, 0x2c},
         "02 6e 73 c0 0c c0 0c 00 00 be ef 00 00 1c 20 00 00 0e 10 00 12 75 00 00 00 01 2c</raw_data_hex>"
         "<translated_data  domain_name=\"ns.a.b.\" admin_mailbox=\"a.b.\" serial_num=\"0xbeef\" "
         "refresh_sec=\"7200\" retry_sec=\"3600\" expire_sec=\"1209600\" min_sec=\"300\""},
        {6, {0xc0, 12, 0xc0, 12}, "c0 0c c0 0c</raw_data_hex><translated_data "},  // SOA cut short
        {16, {2, 'h', '<'}, "02 68 3c</raw_data_hex><translated_data "},
    };
    for (const auto& [type, rdata, tail] : cases) {
        // Every section alike: XML reads the data from the packet.
        const std::string line = xml_of(test_support::record_entry(type, rdata, false));
        EXPECT_EQ(line.substr(line.find("<raw_data_hex>") + 14), tail + "></translated_data></data_entry>\r\n");
    }
}

TEST(XmlReport, RowOfTheBuiltQuery) {
    // A timeout row: no data, no replacement in the query, and for a PTR
    // query an empty name rather than one read from the query packet.
    dns_entry query;
    query.packet = shared_packet(byte_list{0x2a, 0x00, 0x01, 0x00});
    query.query = "a|b";
    query.dns_type = 12;
    query.dns_class = 1;
    const std::string line = xml_of(query, "timeout");
    EXPECT_NE(line.find("<query>a|b</query><status>timeout</status>"), std::string::npos);
    EXPECT_NE(line.find("<ttl_secs>0</ttl_secs><data_length>0</data_length><raw_data_hex></raw_data_hex>"
                        "<translated_data  domain_name=\"\"></translated_data>"), std::string::npos);
}

TEST(XmlReport, FormatIpv6FoldsTheFirstZeroRun) {
    const std::pair<std::vector<std::uint16_t>, std::string> cases[] = {
        {{0, 0, 0, 0, 0, 0, 0, 0}, "::"}, {{0, 0, 0, 0, 0, 0, 0, 1}, "::1"},
        {{1, 0, 2, 0, 3, 4, 5, 6}, "1::2:0:3:4:5:6"},
        {{1, 0, 0, 2, 0, 0, 0, 0}, "1::2:0:0:0:0"},  // the first run, not the longest
        {{1, 2, 3, 4, 5, 6, 7, 0}, "1:2:3:4:5:6:7::"}, {{0xabcd}, "abcd"}, {{}, ""},
    };
    for (const auto& [groups, expected] : cases) {
        byte_list bytes;
        for (std::uint16_t g : groups)
            bytes.insert(bytes.end(), {static_cast<std::uint8_t>(g >> 8), static_cast<std::uint8_t>(g)});
        if (bytes.empty()) bytes.push_back(0xff);  // one odd byte: no group
        std::string text = "old";
        EXPECT_TRUE(format_ipv6(bytes.data(), bytes.size(), text));
        EXPECT_EQ(text, expected);
    }
    std::string text = "old";
    const std::uint8_t one = 1;
    EXPECT_FALSE(format_ipv6(&one, 0, text));
    EXPECT_FALSE(format_ipv6(nullptr, 16, text));
    EXPECT_EQ(text, "old");
}

}  // namespace

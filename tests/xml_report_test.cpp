// Whole lines of each record type are the interop tests'; these are the edges.
#include "report/xml_report.h"

#include <tuple>

#include "support/fixtures.h"

namespace {

std::string xml_of(const dns_entry& entry, std::string_view status = "success") {
    test_support::string_output out;
    row_workspace work;
    write_xml_entry(entry, out, 0, status, work);
    return out.text();
}

TEST(XmlReport, TranslatedDataThatDoesntReadAsItsType) {
    const std::tuple<std::uint16_t, byte_list, const char*, const char*> cases[] = {
        // type, RDATA, hex, attributes
        {1, {1, 2, 3, 4, 5, 6}, "01 02 03 04 05 06", ""},
        {28, {}, "", " ipv6_addr=\"\""},
        {15, {}, "", ""},
        {15, {0x03, 0xe8, 1, 'm', 5, 'x'}, "03 e8 01 6d 05 78", " preference=\"1000\" mx_server=\"\""},  // runs off
        {15, {0x01}, "01", " preference=\"256\" mx_server=\"\""},  // the missing byte reads 0
        {6, {0xc0, 12, 0xc0, 12}, "c0 0c c0 0c", ""},
        {16, {2, 'h', '<'}, "02 68 3c", ""},
        {12, {0xc0, 0x21}, "c0 21", " domain_name=\"\""},  // pointer loop
    };
    for (const auto& [type, rdata, hex, attributes] : cases) {
        const std::string line = xml_of(test_support::record_entry(type, rdata, false));  // any section alike
        const std::string tail = std::string(hex) + "</raw_data_hex><translated_data " + attributes + "></";
        EXPECT_TRUE(line.ends_with("<raw_data_hex>" + tail + "translated_data></data_entry>\r\n")) << line;
    }
}

TEST(XmlReport, RowOfTheBuiltQuery) {
    // A timeout row: no data, no replacement in the query, and for a PTR query an empty name, none from the packet.
    dns_entry query;
    query.packet = shared_packet(byte_list{0x2a, 0x00, 0x01, 0x00});
    query.query = "a|b";
    query.dns_type = 12;
    const std::string line = xml_of(query, "timeout");
    EXPECT_TRUE(line.starts_with("<data_entry><query>a|b</query><status>timeout</status>")) << line;
    EXPECT_TRUE(
        line.ends_with("<ttl_secs>0</ttl_secs><data_length>0</data_length><raw_data_hex></raw_data_hex>"
                       "<translated_data  domain_name=\"\"></translated_data></data_entry>\r\n"))
        << line;
}

TEST(XmlReport, FormatIpv6FoldsTheFirstZeroRun) {
    // An odd last byte is no group.
    const std::pair<byte_list, std::string> cases[] = {
        {byte_list(16, 0), "::"},
        {{0, 1, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0}, "1::2:0:0:0:0"},  // the first run
        {{0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0, 7, 0, 0}, "1:2:3:4:5:6:7::"},
        {{0xab, 0xcd, 0xff}, "abcd"},
        {{0xff}, ""},
    };
    for (const auto& [bytes, expected] : cases) {
        std::string text = "old";
        EXPECT_TRUE(format_ipv6(bytes.data(), bytes.size(), text)) << expected;
        EXPECT_EQ(text, expected);
    }
    std::string text = "old";
    const std::uint8_t one = 1;
    EXPECT_FALSE(format_ipv6(&one, 0, text) || format_ipv6(nullptr, 16, text) || text != "old");
}

}  // namespace

// Whole lines of each record type are the interop tests'; these are the edges: a row of the query itself
// (a time-out), and the folding of IPv6 zero runs.
#include "report/xml_report.h"

#include "support/fixtures.h"

namespace {

TEST(XmlReport, RowOfTheBuiltQuery) {
    // A timeout row: no data, no replacement in the query, and for a PTR query an empty name, none from the packet.
    dns_entry query;
    query.packet = shared_packet(byte_list{0x2a, 0x00, 0x01, 0x00});
    query.query = "a|b";
    query.dns_type = 12;
    test_support::string_output out;
    row_workspace work;
    write_xml_entry(query, out, 0, "timeout", work);
    const std::string line = out.text();
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
    EXPECT_FALSE(format_ipv6(&one, 0, text));
    EXPECT_FALSE(format_ipv6(nullptr, 16, text));
    EXPECT_EQ(text, "old");
}

}  // namespace

#include "dns/query_builder.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

byte_list bytes_of(const shared_packet& packet) {
    return byte_list(packet.data(), packet.data() + packet.size());
}

TEST(QueryBuilder, MessageForTwoLabels) {
    dns_entry entry;
    ASSERT_TRUE(build_query(entry, "a.bc", 1));
    const byte_list expected{
        0x00, 0x00,              // ID, compared apart below
        0x01, 0x00,              // RD only
        0x00, 0x01, 0x00, 0x00,  // QDCOUNT 1, ANCOUNT 0
        0x00, 0x00, 0x00, 0x00,  // NSCOUNT 0, ARCOUNT 0
        0x01, 'a', 0x02, 'b', 'c', 0x00,  // a.bc
        0x00, 0x01, 0x00, 0x01,           // QTYPE A, QCLASS IN
    };
    byte_list got = bytes_of(entry.packet);
    ASSERT_EQ(got.size(), expected.size());
    EXPECT_EQ(got[0], entry.packet_id);
    got[0] = 0;
    EXPECT_EQ(got, expected);
    EXPECT_EQ(entry.query, "a.bc");
    EXPECT_EQ(entry.dns_type, 1);
    EXPECT_EQ(entry.dns_class, 1);
    EXPECT_TRUE(entry.dns_server.empty());
    EXPECT_TRUE(entry.raw_data().empty());
}

TEST(QueryBuilder, EncodeName) {
    const std::string l255(255, 'x');
    const std::string l200(200, 'y');
    struct row {
        const char* what;
        std::string text;
        bool ok;
        byte_list qname;  // checked when short enough to write out
    };
    const row rows[] = {
        {"plain", "a.bc", true, {0x01, 'a', 0x02, 'b', 'c', 0x00}},
        {"trailing dot", "a.bc.", true, {0x01, 'a', 0x02, 'b', 'c', 0x00}},
        {"leading and doubled dots", ".a..bc", true, {0x01, 'a', 0x02, 'b', 'c', 0x00}},
        {"bytes go out as given", "A_ \xe9", true, {0x04, 'A', '_', ' ', 0xe9, 0x00}},
        {"empty", "", false, {}},
        {"one dot", ".", false, {}},
        {"dots only", "...", false, {}},
        {"label of 256", "a." + l255 + "x", false, {}},
    };
    for (const row& r : rows) {
        byte_list out{0xaa};
        EXPECT_EQ(encode_name(r.text, out), r.ok) << r.what;
        if (r.ok) EXPECT_EQ(out, r.qname) << r.what;
    }

    // Labels up to 255 bytes and names of any length are sent.
    byte_list out;
    ASSERT_TRUE(encode_name(l255, out));
    EXPECT_EQ(out.size(), 257u);
    EXPECT_EQ(out[0], 0xff);
    ASSERT_TRUE(encode_name(l200 + "." + l200 + "." + l200, out));
    EXPECT_EQ(out.size(), 3 * 201u + 1);
}

TEST(QueryBuilder, QueryTypesAndFailures) {
    struct row {
        std::uint32_t type;
        const char* text;
        bool ok;
    };
    const row rows[] = {
        {1, "h.example", true},  {2, "example", true}, {5, "www.example", true},
        {15, "example", true},   {16, "example", true}, {12, "192.0.2.1", true},
        {12, "...", true},       {1, "...", false},     {1, "", false},
        {28, "example", false},  // no query of any other type exists
    };
    for (const row& r : rows) {
        dns_entry entry;
        entry.ttl_secs = 7;
        entry.query = "stale";
        ASSERT_EQ(build_query(entry, r.text, r.type), r.ok) << r.type << " " << r.text;
        if (!r.ok) {
            EXPECT_TRUE(entry.packet.empty());
            EXPECT_TRUE(entry.query.empty());
            EXPECT_EQ(entry.ttl_secs, 0u);
            EXPECT_EQ(entry.packet_id, 0);
            continue;
        }
        const byte_list got = bytes_of(entry.packet);
        EXPECT_EQ(got[got.size() - 3], r.type);  // QTYPE low byte, then class 00 01
        EXPECT_EQ(entry.query, r.text);          // the address, not the reversed name
    }
}

TEST(QueryBuilder, IdsStayInRangeAndVary) {
    std::set<int> seen;
    for (int i = 0; i < 400; ++i) {
        dns_entry entry;
        ASSERT_TRUE(build_query(entry, "example", 1));
        const byte_list got = bytes_of(entry.packet);
        ASSERT_GE(got[0], 10);
        ASSERT_LE(got[0], 99);
        ASSERT_EQ(got[1], 0);
        ASSERT_EQ(entry.packet_id, got[0]);
        seen.insert(got[0]);
    }
    // A generator seeded per query from the clock's seconds would repeat itself here.
    EXPECT_GT(seen.size(), 20u);

    const std::string id = make_packet_id();
    ASSERT_EQ(id.size(), 2u);
    EXPECT_TRUE(id[0] >= '1' && id[0] <= '9' && id[1] >= '0' && id[1] <= '9');
}

}  // namespace

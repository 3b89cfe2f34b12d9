#include "dns/query_builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace {

byte_list bytes_of(const dns_entry& entry) {
    return byte_list(entry.packet.data(), entry.packet.data() + entry.packet.size());
}

TEST(QueryBuilder, MessageForTwoLabels) {
    dns_entry entry;
    ASSERT_TRUE(build_query(entry, "a.bc", 1));
    const byte_list expected{
        0x2a, 0x00,                                                  // ID 42, low byte first
        0x01, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // RD; one question
        0x01, 'a', 0x02, 'b', 'c', 0x00,                             // a.bc
        0x00, 0x01, 0x00, 0x01,                                      // A, IN
    };
    byte_list got = bytes_of(entry);
    ASSERT_EQ(got.size(), expected.size());
    EXPECT_EQ(got[0], entry.packet_id);
    got[0] = 0x2a;  // the ID is drawn
    EXPECT_EQ(got, expected);
    EXPECT_EQ(entry.query, "a.bc");
    EXPECT_EQ(entry.dns_class, 1);
}

TEST(QueryBuilder, EncodeName) {
    const std::string l255(255, 'x');
    const std::string l200(200, 'y');
    const struct {
        const char* what;
        std::string text;
        std::size_t size;  // 0: refused
        byte_list head;    // first bytes of QNAME
    } rows[] = {
        {"plain", "a.bc", 6, {0x01, 'a', 0x02, 'b', 'c', 0x00}},
        {"trailing dot", "a.bc.", 6, {0x01, 'a', 0x02, 'b', 'c', 0x00}},
        {"leading and doubled dots", ".a..bc", 6, {0x01, 'a', 0x02, 'b', 'c', 0x00}},
        {"bytes go out as given", "A_ \xe9", 6, {0x04, 'A', '_', ' ', 0xe9, 0x00}},
        {"label of 255", l255, 257, {0xff, 'x'}},
        {"no limit on the whole name", l200 + "." + l200 + "." + l200, 604, {200, 'y'}},
        {"label of 256", "a." + l255 + "x", 0, {}},
        {"empty", "", 0, {}},
        {"one dot", ".", 0, {}},
        {"dots only", "...", 0, {}},
    };
    for (const auto& r : rows) {
        byte_list out{0xaa};
        EXPECT_EQ(encode_name(r.text, out), r.size != 0) << r.what;
        EXPECT_EQ(out.size(), r.size) << r.what;
        EXPECT_TRUE(std::equal(r.head.begin(), r.head.end(), out.begin())) << r.what;
    }
}

TEST(QueryBuilder, QueryTypesAndFailures) {
    const struct {
        std::uint32_t type;
        const char* text;
        bool ok;
    } rows[] = {
        {1, "h.example", true}, {2, "example", true},  {5, "www.example", true},
        {15, "example", true},  {16, "example", true}, {12, "192.0.2.1", true},
        {12, "...", true},      {1, "...", false},     {1, "", false},
        {28, "example", false},  // no query of any other type exists
    };
    for (const auto& r : rows) {
        dns_entry entry;
        entry.ttl_secs = 7;
        entry.query = "stale";
        ASSERT_EQ(build_query(entry, r.text, r.type), r.ok) << r.type << " " << r.text;
        if (r.ok) {
            const byte_list got = bytes_of(entry);
            EXPECT_EQ(got[got.size() - 3], r.type);  // QTYPE low byte, then class 00 01
            EXPECT_EQ(entry.query, r.text);          // the address, not the reversed name
        } else {
            EXPECT_TRUE(entry.packet.empty() && entry.query.empty());
            EXPECT_EQ(entry.ttl_secs + entry.packet_id, 0u);
        }
    }
}

TEST(QueryBuilder, IdsStayInRangeAndVary) {
    std::set<int> seen;
    for (int i = 0; i < 400; ++i) {
        dns_entry entry;
        ASSERT_TRUE(build_query(entry, "example", 1));
        const byte_list got = bytes_of(entry);
        ASSERT_TRUE(got[0] >= 10 && got[0] <= 99 && got[1] == 0) << int{got[0]} << int{got[1]};
        seen.insert(got[0]);
    }
    // A generator seeded per query from the clock's seconds would repeat itself here.
    EXPECT_GT(seen.size(), 20u);
}

}  // namespace

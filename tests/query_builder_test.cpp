#include "dns/query_builder.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "support/fixtures.h"

namespace {

using test_support::join;

TEST(QueryBuilder, MessageWithIdLowByteFirst) {
    dns_entry e;
    ASSERT_TRUE(build_query(e, "a.bc", 1));
    EXPECT_EQ(byte_list(e.packet.bytes().begin(), e.packet.bytes().end()),
              join({{static_cast<std::uint8_t>(e.packet_id), 0},  // ID, low byte first
                    {0x01, 0x00, 0, 1, 0, 0, 0, 0, 0, 0},          // RD; one question
                    {1, 'a', 2, 'b', 'c', 0}, {0, 1, 0, 1}}));     // a.bc. A IN
    EXPECT_EQ(e.query, "a.bc");
    EXPECT_EQ(e.dns_class, 1);
}

TEST(QueryBuilder, EncodeName) {
    const std::string l255(255, 'x'), l200(200, 'y');
    const std::tuple<std::string, std::size_t, byte_list> rows[] = {  // text, size (0: refused), first bytes
        {".a..bc.", 6, {1, 'a', 2, 'b', 'c', 0}},         // empty stretches drop out
        {"A_ \xe9", 6, {4, 'A', '_', ' ', 0xe9, 0}},      // bytes go out as given
        {l255, 257, {0xff, 'x'}},                         // the longest label
        {l200 + "." + l200 + "." + l200, 604, {200, 'y'}},  // no limit on the whole name
        {"a." + l255 + "x", 0, {}}, {"", 0, {}}, {"...", 0, {}},
    };
    for (const auto& [text, size, head] : rows) {
        byte_list out{0xaa};
        EXPECT_EQ(encode_name(text, out), size != 0) << text;
        EXPECT_EQ(out.size(), size) << text;
        EXPECT_TRUE(std::equal(head.begin(), head.end(), out.begin())) << text;
    }
}

TEST(QueryBuilder, TypesAndFailures) {
    const std::tuple<std::uint32_t, const char*, bool> rows[] = {
        {12, "192.0.2.1", true}, {12, "...", true}, {1, "...", false}, {28, "a", false}};
    for (const auto& [type, text, ok] : rows) {
        dns_entry e;
        e.ttl_secs = 7;
        e.query = "stale";
        ASSERT_EQ(build_query(e, text, type), ok) << type << " " << text;
        EXPECT_EQ(e.query, ok ? text : "");  // PTR: the address, not the reversed name
        // QTYPE's low byte; a refused text leaves nothing behind.
        EXPECT_EQ(ok ? e.packet.data()[e.packet.size() - 3] : e.packet.size() + e.ttl_secs + e.packet_id,
                  ok ? type : 0u);
    }
}

TEST(QueryBuilder, IdsStayInRangeAndVary) {
    std::set<int> seen;
    for (int i = 0; i < 400; ++i) {
        dns_entry e;
        ASSERT_TRUE(build_query(e, "example", 1));
        ASSERT_TRUE(e.packet_id >= 10 && e.packet_id <= 99 && e.packet.data()[1] == 0) << e.packet_id;
        seen.insert(e.packet_id);
    }
    // A generator seeded per query from the clock's seconds would repeat itself here.
    EXPECT_GT(seen.size(), 20u);
}

}  // namespace

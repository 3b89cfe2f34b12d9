// The query bytes of each command are the end-to-end tests'; these are the edges of names and types.
#include "dns/query_builder.h"

#include <set>
#include <tuple>

#include "support/fixtures.h"

namespace {

using test_support::join;

TEST(QueryBuilder, EncodeName) {
    const std::string l255(255, 'x'), l200(200, 'y');
    const std::tuple<std::string, std::size_t, byte_list> rows[] = {
        // text, size (0: refused), first bytes
        {".a..bc.", 6, {1, 'a', 2, 'b', 'c', 0}},           // empty stretches drop out
        {"A_ \xe9", 6, {4, 'A', '_', ' ', 0xe9, 0}},        // bytes go out as given
        {l255, 257, {0xff, 'x'}},                           // the longest label
        {l200 + "." + l200 + "." + l200, 604, {200, 'y'}},  // no limit on the whole name
        {"a." + l255 + "x", 0, {}},
        {"", 0, {}},
        {"...", 0, {}},
    };
    for (const auto& [text, size, head] : rows) {
        byte_list out{0xaa};  // the name goes behind what the message holds
        EXPECT_EQ(encode_name(text, out), size != 0) << text;
        if (size == 0) continue;
        ASSERT_EQ(out.size(), 1 + size) << text;
        EXPECT_EQ(out[0], 0xaa) << text;
        EXPECT_TRUE(std::equal(head.begin(), head.end(), out.begin() + 1)) << text;
    }
}

TEST(QueryBuilder, TypesReverseNamesIdsAndFailures) {
    const byte_list arpa{7, 'i', 'n', '-', 'a', 'd', 'd', 'r', 4, 'a', 'r', 'p', 'a', 0};
    // Type, text, the name asked for (none: refused). A PTR query asks for the pieces reversed, empty ones dropped.
    const std::tuple<std::uint32_t, std::string, byte_list> rows[] = {
        {12, "www.ex", join({{2, 'e', 'x', 3, 'w', 'w', 'w'}, arpa})},
        {12, ".1..2.", join({{1, '2', 1, '1'}, arpa})},
        {12, "...", arpa},
        {12, "", {}},
        {12, "1." + std::string(256, '9'), {}},
        {1, "...", {}},
        {28, "a", {}},
    };
    for (const auto& [type, text, name] : rows) {
        dns_entry e;
        e.ttl_secs = 7;
        ASSERT_EQ(build_query(e, text, type), !name.empty()) << type << " " << text;
        if (name.empty()) {
            EXPECT_EQ(e.packet.size(), 0u) << text;
            EXPECT_EQ(e.ttl_secs, 0u) << text << ": the entry is reset";
            EXPECT_EQ(e.packet_id, 0u) << text;
            EXPECT_EQ(e.query, "") << text;
            continue;
        }
        EXPECT_EQ(byte_list(e.packet.data() + 12, e.packet.data() + e.packet.size() - 4), name) << text;
        EXPECT_EQ(e.packet.data()[e.packet.size() - 3], type) << text;
        EXPECT_EQ(e.query, text) << "not the reversed name";
    }
    std::set<int> seen;
    for (int i = 0; i < 400; ++i) {
        dns_entry e;
        ASSERT_TRUE(build_query(e, "example", 1));
        seen.insert(e.packet_id);  // its range and place in the packet are the end-to-end tests'
    }
    EXPECT_GT(seen.size(), 20u);  // a generator seeded per query from the clock's seconds would repeat itself
}

}  // namespace

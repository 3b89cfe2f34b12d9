#include "dns/reply_parser.h"

#include <array>
#include <tuple>

#include "support/fixtures.h"

namespace {

using bytes = std::vector<std::uint8_t>;
using test_support::join;

struct parsed {
    std::uint32_t result = 0;
    std::uint16_t id = 0xbeef;
    std::vector<dns_entry> lists[4];  // question, answer, authority, additional
    explicit parsed(const shared_packet& m) {
        result = parse_reply("192.0.2.53", 1234, m, id, lists[0], lists[1], lists[2], lists[3]);
    }
    std::array<std::size_t, 4> sizes() const {
        return {lists[0].size(), lists[1].size(), lists[2].size(), lists[3].size()};
    }
};

TEST(ReplyParser, FullReply) {
    const shared_packet message(join({
        {0x2a, 0x01, 0x81, 0x83, 0, 1, 0, 2, 0, 1, 0, 1},         // ID 0x012a, NXDOMAIN; 1 2 1 1
        {1, 'a', 2, 'b', 'c', 0, 0, 1, 0, 1},                     // 12: a.bc. A IN
        {0xc0, 12, 0, 5, 0, 1, 0, 0, 0x0e, 0x10, 0, 4},           // 22: a.bc. CNAME IN 3600
        {1, 'x', 0xc0, 12},                                       // 34:   x.a.bc.
        {0xc0, 34, 0, 1, 0, 1, 0, 0, 0, 60, 0, 4, 192, 0, 2, 1},  // 38: x.a.bc. A 192.0.2.1
        {0xc0, 12, 0, 2, 0, 1, 0, 0, 0, 60, 0, 2, 0xc0, 12},      // 54: a.bc. NS a.bc.
        {0xc0, 12, 0, 16, 0, 1, 0, 0, 0, 60, 0, 3, 2, 'h', 'i'},  // 68: a.bc. TXT "hi", ends at 83
    }));
    const parsed p(message);
    EXPECT_EQ(p.result, 83u);
    EXPECT_EQ(p.id, 0x012a);
    ASSERT_EQ(p.sizes(), (std::array<std::size_t, 4>{1, 2, 1, 1}));
    EXPECT_EQ(p.lists[0][0].query, "a.bc.");
    EXPECT_EQ(p.lists[1][1].query, "x.a.bc.");
    EXPECT_EQ(p.lists[1][0].ttl_secs, 3600u);
    const auto raw = p.lists[1][0].raw_data();  // only answers carry raw data; the others keep offset and length
    EXPECT_EQ(bytes(raw.begin(), raw.end()), (bytes{1, 'x', 0xc0, 12}));
    const dns_entry& txt = p.lists[3][0];
    EXPECT_EQ(txt.data_offset, 80u);
    EXPECT_EQ(txt.data_length, 3u);
    EXPECT_TRUE(txt.raw_data().empty());
    for (const auto& list : p.lists)
        for (const dns_entry& e : list) {  // all share the one message
            EXPECT_EQ(e.packet.data(), message.data()) << e.query;
            EXPECT_EQ(e.packet_id, 0x012a) << e.query;
            EXPECT_EQ(e.query_time, 1234u) << e.query;
            EXPECT_EQ(e.dns_server, "192.0.2.53") << e.query;
        }
}

TEST(ReplyParser, CountsTruncationsAndFaults) {
    const auto header = [](std::uint8_t qd, std::uint8_t an, std::uint8_t ns, std::uint8_t ar) {
        return bytes{0x2a, 0x00, 0x80, 0x00, 0, qd, 0, an, 0, ns, 0, ar};  // ID 0x002a, QR set, and the counts
    };
    const bytes a_rr{0, 0, 1, 0, 1, 0, 0, 0, 60, 0, 4, 192, 0, 2, 1};     // root A IN 60, 4 bytes
    const bytes long_rr{0, 0, 1, 0, 1, 0, 0, 0, 60, 0, 5, 192, 0, 2, 1};  // says 5, has 4
    // What, message, result (~0: its length), entries stored in the four lists.
    const std::tuple<const char*, bytes, std::uint32_t, std::array<std::size_t, 4>> rows[] = {
        {"QR clear", {0x2a, 0, 0x01, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1}, 0, {}},
        {"empty message", {}, 0, {}},
        {"shorter than a header", {0x2a, 0x00, 0x80}, 12, {}},
        {"counts say more", header(5, 5, 5, 5), 12, {}},
        {"answer count above the records", join({header(0, 5, 0, 0), a_rr, a_rr}), ~0u, {0, 2, 0, 0}},
        {"answer count below the records", join({header(0, 1, 0, 0), a_rr, a_rr}), 27, {0, 1, 0, 0}},
        {"RDATA past the end", join({header(0, 2, 0, 0), a_rr, long_rr}), 0, {0, 1, 0, 0}},
        {"question cut in its type reads zeros", join({header(1, 1, 0, 0), {1, 'a', 0, 0}}), 19, {1, 0, 0, 0}},
        {"pointer loop in authority", join({header(0, 1, 1, 1), a_rr, {/* 27: */ 0xc0, 27}}), 0, {0, 1, 0, 0}},
    };
    for (const auto& [what, message, result, stored] : rows) {
        const parsed p{shared_packet(message)};
        EXPECT_EQ(p.result, result == ~0u ? message.size() : result) << what;
        EXPECT_EQ(p.sizes(), stored) << what;
        if (message.size() > 2) { EXPECT_EQ(p.id, message[2] & 0x80 ? 0x002a : 0xbeef) << what; }  // not without QR
    }
}

}  // namespace

#include "dns/reply_parser.h"

#include <gtest/gtest.h>

#include <array>
#include <tuple>

#include "dns/name_decoder.h"
#include "support/fixtures.h"

namespace {

using bytes = std::vector<std::uint8_t>;
using test_support::join;

struct parsed {
    std::uint32_t result = 0;
    std::uint16_t id = 0xbeef;
    std::vector<dns_entry> question, answer, authority, additional;
    std::array<std::size_t, 4> sizes() const {
        return {question.size(), answer.size(), authority.size(), additional.size()};
    }
};

parsed parse(const shared_packet& message) {
    parsed p;
    p.result = parse_reply("192.0.2.53", 1234, message, p.id, p.question, p.answer, p.authority, p.additional);
    return p;
}

TEST(ReplyParser, FullReply) {
    const bytes reply = join({
        {0x2a, 0x01, 0x81, 0x83, 0, 1, 0, 2, 0, 1, 0, 1},  // ID 0x012a, NXDOMAIN; 1 2 1 1
        {1, 'a', 2, 'b', 'c', 0, 0, 1, 0, 1},                 // 12: a.bc. A IN
        {0xc0, 12, 0, 5, 0, 1, 0, 0, 0x0e, 0x10, 0, 4},       // 22: a.bc. CNAME IN 3600
        {1, 'x', 0xc0, 12},                                   // 34:   x.a.bc.
        {0xc0, 34, 0, 1, 0, 1, 0, 0, 0, 60, 0, 4, 192, 0, 2, 1},  // 38: x.a.bc. A 192.0.2.1
        {0xc0, 12, 0, 2, 0, 1, 0, 0, 0, 60, 0, 2, 0xc0, 12},      // 54: a.bc. NS a.bc.
        {0xc0, 12, 0, 16, 0, 1, 0, 0, 0, 60, 0, 3, 2, 'h', 'i'},  // 68: a.bc. TXT "hi", ends at 83
    });
    dns_entry kept;
    {
        const shared_packet message(reply);
        const parsed p = parse(message);
        EXPECT_EQ(p.result, 83u);
        EXPECT_EQ(p.id, 0x012a);
        ASSERT_EQ(p.sizes(), (std::array<std::size_t, 4>{1, 2, 1, 1}));
        EXPECT_EQ(p.question[0].query + p.answer[1].query, "a.bc.x.a.bc.");
        const dns_entry& cname = p.answer[0];
        EXPECT_EQ(cname.ttl_secs, 3600u);
        EXPECT_EQ(bytes(cname.raw_data().begin(), cname.raw_data().end()), (bytes{1, 'x', 0xc0, 12}));
        // Only answers carry raw data; the others keep offset and length.
        EXPECT_TRUE(p.additional[0].data_offset == 80 && p.additional[0].data_length == 3);
        EXPECT_TRUE(p.additional[0].raw_data().empty() && p.authority[0].raw_data().empty());
        for (const auto* list : {&p.question, &p.answer, &p.authority, &p.additional})
            for (const dns_entry& e : *list) {
                EXPECT_EQ(e.packet.data(), message.data());  // one shared copy
                EXPECT_TRUE(e.packet_id == 0x012a && e.query_time == 1234u && e.dns_server == "192.0.2.53");
            }
        kept = cname;
    }
    // The entry still reads names through the message after the reply is gone.
    std::string name;
    read_name(kept.packet.data(), static_cast<std::int32_t>(kept.packet.size()), kept.data_offset, name);
    EXPECT_EQ(name, "x.a.bc.");
}

// ID 0x002a, QR set, then QDCOUNT, ANCOUNT, NSCOUNT, ARCOUNT.
bytes header(std::uint8_t qd, std::uint8_t an, std::uint8_t ns, std::uint8_t ar) {
    return {0x2a, 0x00, 0x80, 0x00, 0, qd, 0, an, 0, ns, 0, ar};
}

TEST(ReplyParser, CountsTruncationsAndFaults) {
    const bytes a_rr{0, 0, 1, 0, 1, 0, 0, 0, 60, 0, 4, 192, 0, 2, 1};     // root A IN 60, 4 bytes
    const bytes long_rr{0, 0, 1, 0, 1, 0, 0, 0, 60, 0, 5, 192, 0, 2, 1};  // says 5, has 4
    constexpr std::uint32_t whole = ~0u;  // the message's length
    // What, message, result (`whole`: its length), entries stored in the four lists.
    const std::tuple<const char*, bytes, std::uint32_t, std::array<std::size_t, 4>> rows[] = {
        {"QR clear", {0x2a, 0, 0x01, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1}, 0, {}},
        {"empty message", {}, 0, {}},
        {"shorter than a header", {0x2a, 0x00, 0x80}, 12, {}},
        {"header only, counts say more", header(5, 5, 5, 5), 12, {}},
        {"answer count above the records", join({header(0, 5, 0, 0), a_rr, a_rr}), whole, {0, 2, 0, 0}},
        {"answer count below the records", join({header(0, 1, 0, 0), a_rr, a_rr}), 27, {0, 1, 0, 0}},
        {"RDATA past the end", join({header(0, 2, 0, 0), a_rr, long_rr}), 0, {0, 1, 0, 0}},
        {"answer cut in its fixed fields", join({header(0, 1, 0, 0), {0, 0, 1, 0}}), 0, {}},
        {"question cut in its type reads zeros", join({header(1, 1, 0, 0), {1, 'a', 0, 0}}), 19, {1, 0, 0, 0}},
        {"pointer loop in authority", join({header(0, 1, 1, 1), a_rr, {/* 27: */ 0xc0, 27}}), 0, {0, 1, 0, 0}},
    };
    for (const auto& [what, message, result, stored] : rows) {
        const parsed p = parse(shared_packet(message));
        EXPECT_EQ(p.result, result == whole ? message.size() : result) << what;
        EXPECT_EQ(p.sizes(), stored) << what;
        // The ID is not written without QR.
        if (message.size() > 2) { EXPECT_EQ(p.id, message[2] & 0x80 ? 0x002a : 0xbeef) << what; }
    }
}

TEST(ReplyParser, SoaBoundIsTheMessage) {
    // Two root names at offset 12, then the five numbers; RDLENGTH plays no part.
    for (std::size_t numbers : {20, 19, 0}) {
        const bytes m = join({bytes(12, 0), {0, 0}, bytes(numbers, 0x01)});
        soa_data soa;
        EXPECT_EQ(read_soa(m.data(), static_cast<std::int32_t>(m.size()), 12, soa), numbers == 20);
        EXPECT_EQ(soa.expire_sec, numbers == 20 ? 0x01010101u : 0u);
    }
    const bytes rname_cut = join({bytes(12, 0), {0, 0xc0}});
    soa_data soa;
    EXPECT_FALSE(read_soa(rname_cut.data(), 14, 12, soa));
}

}  // namespace

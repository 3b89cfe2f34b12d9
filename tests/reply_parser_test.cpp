#include "dns/reply_parser.h"

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <string>
#include <vector>

#include "dns/name_decoder.h"

namespace {

using bytes = std::vector<std::uint8_t>;

bytes join(std::initializer_list<bytes> groups) {
    bytes all;
    for (const bytes& g : groups) all.insert(all.end(), g.begin(), g.end());
    return all;
}

struct parsed {
    std::uint32_t result = 0;
    std::uint16_t id = 0xbeef;
    std::vector<dns_entry> question, answer, authority, additional;
};

parsed parse(const shared_packet& message) {
    parsed p;
    p.result = parse_reply("192.0.2.53", 1234, message, p.id, p.question, p.answer, p.authority,
                           p.additional);
    return p;
}

std::string name_at(const dns_entry& entry, std::uint32_t offset) {
    std::string out;
    read_name(entry.packet.data(), static_cast<std::int32_t>(entry.packet.size()), offset, out);
    return out;
}

// NXDOMAIN-style reply that still carries records in every section.
const bytes full_reply = join({
    {0x2a, 0x01, 0x81, 0x83},              // ID 0x012a, QR RD RA, RCODE 3
    {0x00, 0x01, 0x00, 0x02, 0x00, 0x01, 0x00, 0x01},
    {0x01, 'a', 0x02, 'b', 'c', 0x00},     // 12: a.bc.
    {0x00, 0x01, 0x00, 0x01},              //     A IN
    {0xc0, 0x0c, 0x00, 0x05, 0x00, 0x01},  // 22: a.bc. CNAME IN
    {0x00, 0x00, 0x0e, 0x10, 0x00, 0x04},  //     TTL 3600, RDLENGTH 4
    {0x01, 'x', 0xc0, 0x0c},               // 34: x.a.bc.
    {0xc0, 0x22, 0x00, 0x01, 0x00, 0x01},  // 38: x.a.bc. A IN
    {0x00, 0x00, 0x00, 0x3c, 0x00, 0x04},  //     TTL 60, RDLENGTH 4
    {0xc0, 0x00, 0x02, 0x01},              // 50: 192.0.2.1
    {0xc0, 0x0c, 0x00, 0x06, 0x00, 0x01},  // 54: a.bc. SOA IN
    {0x00, 0x00, 0x00, 0x3c, 0x00, 0x1b},  //     TTL 60, RDLENGTH 27
    {0xc0, 0x0c, 0x02, 'h', 'm', 0xc0, 0x0c},  // 66: MNAME a.bc., RNAME hm.a.bc.
    {0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0, 5},
    {0xc0, 0x0c, 0x00, 0x10, 0x00, 0x01},  // 93: a.bc. TXT IN
    {0x00, 0x00, 0x00, 0x3c, 0x00, 0x03},  //     TTL 60, RDLENGTH 3
    {0x02, 'h', 'i'},                      // 105: "hi", ends at 108
});

TEST(ReplyParser, FullReply) {
    dns_entry kept;
    {
        const shared_packet message(full_reply);
        const parsed p = parse(message);
        EXPECT_EQ(p.result, 108u);
        EXPECT_EQ(p.id, 0x012a);
        ASSERT_EQ(p.question.size(), 1u);
        ASSERT_EQ(p.answer.size(), 2u);
        ASSERT_EQ(p.authority.size() + p.additional.size(), 2u);
        EXPECT_EQ(p.question[0].query, "a.bc.");
        EXPECT_EQ(p.question[0].data_length + p.question[0].data_offset, 0u);
        EXPECT_EQ(p.answer[1].query, "x.a.bc.");

        const dns_entry& cname = p.answer[0];
        EXPECT_EQ(cname.ttl_secs, 3600u);
        EXPECT_EQ(cname.data_offset, 34u);
        EXPECT_EQ(bytes(cname.raw_data().begin(), cname.raw_data().end()),
                  (bytes{0x01, 'x', 0xc0, 0x0c}));

        // Only answers carry raw data; the others keep offset and length.
        const dns_entry& txt = p.additional[0];
        EXPECT_EQ(txt.data_offset, 105u);
        EXPECT_EQ(txt.data_length, 3);
        EXPECT_TRUE(txt.raw_data().empty() && p.authority[0].raw_data().empty());

        soa_data soa;
        const dns_entry& ns = p.authority[0];
        ASSERT_TRUE(read_soa(ns.packet.data(), static_cast<std::int32_t>(ns.packet.size()),
                             ns.data_offset, soa));
        EXPECT_EQ(soa.domain_name + " " + soa.admin_mailbox, "a.bc. hm.a.bc.");
        EXPECT_EQ(soa.serial_num * 10 + soa.min_sec, 15u);

        for (const auto* list : {&p.question, &p.answer, &p.authority, &p.additional}) {
            for (const dns_entry& e : *list) {
                EXPECT_EQ(e.packet.data(), message.data());  // one shared copy
                EXPECT_EQ(e.packet_id, 0x012a);
                EXPECT_EQ(e.query_time, 1234u);
                EXPECT_EQ(e.dns_server, "192.0.2.53");
            }
        }
        kept = cname;
    }
    // The entry still reads names through the message after the reply is gone.
    EXPECT_EQ(name_at(kept, kept.data_offset), "x.a.bc.");
}

// ID 0x002a, QR set, then QDCOUNT, ANCOUNT, NSCOUNT, ARCOUNT.
bytes header(std::uint8_t qd, std::uint8_t an, std::uint8_t ns, std::uint8_t ar) {
    return {0x2a, 0x00, 0x80, 0x00, 0, qd, 0, an, 0, ns, 0, ar};
}

TEST(ReplyParser, CountsTruncationsAndFaults) {
    const bytes a_record{0x00, 0x00, 0x01, 0x00, 0x01,              // root A IN
                         0x00, 0x00, 0x00, 0x3c, 0x00, 0x04, 192, 0, 2, 1};  // TTL 60, 4 bytes
    const bytes long_rdata{0x00, 0x00, 0x01, 0x00, 0x01,            // root A IN
                           0x00, 0x00, 0x00, 0x3c, 0x00, 0x05, 192, 0, 2, 1};  // says 5, has 4
    constexpr std::uint32_t whole = ~0u;  // the message's length
    const struct {
        const char* what;
        bytes message;
        std::uint32_t result;
        std::array<std::size_t, 4> stored;
    } rows[] = {
        {"QR clear", {0x2a, 0x00, 0x01, 0x00, 0, 1, 0, 0, 0, 0, 0, 0, 0x00, 0, 1, 0, 1}, 0, {}},
        {"empty message", {}, 0, {}},
        {"shorter than a header", {0x2a, 0x00, 0x80}, 12, {}},
        {"header only, counts say more", header(5, 5, 5, 5), 12, {}},
        {"answer count above the records", join({header(0, 5, 0, 0), a_record, a_record}), whole,
         {0, 2, 0, 0}},
        {"answer count below the records", join({header(0, 1, 0, 0), a_record, a_record}), 27,
         {0, 1, 0, 0}},
        {"RDATA past the end", join({header(0, 2, 0, 0), a_record, long_rdata}), 0, {0, 1, 0, 0}},
        {"answer cut in its fixed fields", join({header(0, 1, 0, 0), {0x00, 0x00, 0x01, 0x00}}), 0,
         {}},
        {"question cut in its type reads zeros",
         join({header(1, 1, 0, 0), {0x01, 'a', 0x00, 0x00}}), 19, {1, 0, 0, 0}},
        {"pointer loop in the authority section",
         join({header(0, 1, 1, 1), a_record, {/* 27: */ 0xc0, 0x1b}}), 0, {0, 1, 0, 0}},
    };
    for (const auto& r : rows) {
        const parsed p = parse(shared_packet(r.message));
        EXPECT_EQ(p.result, r.result == whole ? r.message.size() : r.result) << r.what;
        const std::array<std::size_t, 4> stored{p.question.size(), p.answer.size(),
                                                p.authority.size(), p.additional.size()};
        EXPECT_EQ(stored, r.stored) << r.what;
        if (r.message.size() > 2) {
            // The ID is not written without QR.
            EXPECT_EQ(p.id, r.message[2] & 0x80 ? 0x002a : 0xbeef) << r.what;
        }
    }
}

TEST(ReplyParser, SoaBoundIsTheMessage) {
    // Two root names at offset 12, then the five numbers; RDLENGTH plays no part.
    const struct {
        std::size_t number_bytes;
        bool ok;
    } rows[] = {{20, true}, {19, false}, {0, false}};
    for (const auto& r : rows) {
        const bytes m = join({bytes(12, 0), {0x00, 0x00}, bytes(r.number_bytes, 0x01)});
        soa_data soa;
        EXPECT_EQ(read_soa(m.data(), static_cast<std::int32_t>(m.size()), 12, soa), r.ok);
        EXPECT_EQ(soa.expire_sec, r.ok ? 0x01010101u : 0u);
    }
    const bytes rname_cut = join({bytes(12, 0), {0x00, 0xc0}});
    soa_data soa;
    EXPECT_FALSE(read_soa(rname_cut.data(), 14, 12, soa));
}

}  // namespace

#include "dns/reply_parser.h"

#include <array>
#include <tuple>

#include "support/fixtures.h"

namespace {

using bytes = std::vector<std::uint8_t>;
using test_support::join;

TEST(ReplyParser, CountsAreTrustedAsFarAsTheMessageReaches) {
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
        std::uint16_t id = 0xbeef;
        std::vector<dns_entry> lists[4];  // question, answer, authority, additional
        EXPECT_EQ(parse_reply("192.0.2.53", 1234, shared_packet(message), id, lists[0], lists[1], lists[2], lists[3]),
                  result == ~0u ? message.size() : result)
            << what;
        EXPECT_EQ((std::array{lists[0].size(), lists[1].size(), lists[2].size(), lists[3].size()}), stored) << what;
        if (message.size() > 2) { EXPECT_EQ(id, message[2] & 0x80 ? 0x002a : 0xbeef) << what; }  // not without QR
    }
}

}  // namespace

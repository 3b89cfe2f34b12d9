#include "dns/reverse_name.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// The fixed tail of every reverse name: 07 in-addr 04 arpa 00.
byte_list with_tail(byte_list labels) {
    const byte_list tail{0x07, 'i', 'n', '-', 'a', 'd', 'd', 'r', 0x04, 'a', 'r', 'p', 'a', 0x00};
    labels.insert(labels.end(), tail.begin(), tail.end());
    return labels;
}

TEST(ReverseName, PiecesReversedThenInAddrArpa) {
    struct row {
        const char* what;
        std::string text;
        bool ok;
        byte_list qname;
    };
    const row rows[] = {
        {"address", "192.0.2.1", true,
         with_tail({0x01, '1', 0x01, '2', 0x01, '0', 0x03, '1', '9', '2'})},
        {"two numbers", "10.01", true, with_tail({0x02, '0', '1', 0x02, '1', '0'})},
        {"host name", "www.example", true,
         with_tail({0x07, 'e', 'x', 'a', 'm', 'p', 'l', 'e', 0x03, 'w', 'w', 'w'})},
        {"empty pieces drop out", ".1..2.", true, with_tail({0x01, '2', 0x01, '1'})},
        {"dots only", "...", true, with_tail({})},
        {"ipv6 text is one label", "::1", true, with_tail({0x03, ':', ':', '1'})},
        {"empty", "", false, {}},
        {"piece of 256", "1." + std::string(256, '9'), false, {}},
    };
    for (const row& r : rows) {
        byte_list out{0xaa};
        EXPECT_EQ(encode_reverse_name(r.text, out), r.ok) << r.what;
        if (r.ok) EXPECT_EQ(out, r.qname) << r.what;
    }
}

}  // namespace

#include "dns/reverse_name.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Every reverse name ends in 07 in-addr 04 arpa 00.
byte_list with_tail(byte_list labels) {
    const byte_list tail{0x07, 'i', 'n', '-', 'a', 'd', 'd', 'r', 0x04, 'a', 'r', 'p', 'a', 0x00};
    labels.insert(labels.end(), tail.begin(), tail.end());
    return labels;
}

TEST(ReverseName, PiecesReversedThenInAddrArpa) {
    const struct {
        const char* what;
        std::string text;
        byte_list qname;  // empty: refused
    } rows[] = {
        {"address", "192.0.2.1", with_tail({0x01, '1', 0x01, '2', 0x01, '0', 0x03, '1', '9', '2'})},
        {"two numbers", "10.01", with_tail({0x02, '0', '1', 0x02, '1', '0'})},
        {"host name", "www.ex", with_tail({0x02, 'e', 'x', 0x03, 'w', 'w', 'w'})},
        {"empty pieces drop out", ".1..2.", with_tail({0x01, '2', 0x01, '1'})},
        {"dots only", "...", with_tail({})},
        {"ipv6 text is one label", "::1", with_tail({0x03, ':', ':', '1'})},
        {"empty", "", {}},
        {"piece of 256", "1." + std::string(256, '9'), {}},
    };
    for (const auto& r : rows) {
        byte_list out{0xaa};
        EXPECT_EQ(encode_reverse_name(r.text, out), !r.qname.empty()) << r.what;
        if (!r.qname.empty()) {
            EXPECT_EQ(out, r.qname) << r.what;
        }
    }
}

}  // namespace

#include "dns/reverse_name.h"

#include <gtest/gtest.h>

#include "support/fixtures.h"

namespace {

TEST(ReverseName, PiecesReversedThenInAddrArpa) {
    const byte_list tail{7, 'i', 'n', '-', 'a', 'd', 'd', 'r', 4, 'a', 'r', 'p', 'a', 0};
    const struct {
        std::string text;
        byte_list labels;  // before the tail
        bool ok = true;
    } rows[] = {
        {"192.0.2.1", {1, '1', 1, '2', 1, '0', 3, '1', '9', '2'}},
        {"www.ex", {2, 'e', 'x', 3, 'w', 'w', 'w'}},
        {".1..2.", {1, '2', 1, '1'}},  // empty pieces drop out
        {"...", {}},
        {"", {}, false},
        {"1." + std::string(256, '9'), {}, false},
    };
    for (const auto& r : rows) {
        byte_list out{0xaa};
        EXPECT_EQ(encode_reverse_name(r.text, out), r.ok) << r.text;
        if (r.ok) { EXPECT_EQ(out, test_support::join({r.labels, tail})) << r.text; }
    }
}

}  // namespace

#include "dns/reverse_name.h"

#include <gtest/gtest.h>

#include "support/fixtures.h"

namespace {

TEST(ReverseName, PiecesReversedThenInAddrArpa) {
    const byte_list tail{7, 'i', 'n', '-', 'a', 'd', 'd', 'r', 4, 'a', 'r', 'p', 'a', 0};
    const std::tuple<std::string, bool, byte_list> rows[] = {  // text, accepted, labels before the tail
        {"192.0.2.1", true, {1, '1', 1, '2', 1, '0', 3, '1', '9', '2'}},
        {"www.ex", true, {2, 'e', 'x', 3, 'w', 'w', 'w'}},
        {".1..2.", true, {1, '2', 1, '1'}} /* empty pieces drop out */, {"...", true, {}},
        {"", false, {}}, {"1." + std::string(256, '9'), false, {}},
    };
    for (const auto& [text, ok, labels] : rows) {
        byte_list out{0xaa};
        EXPECT_EQ(encode_reverse_name(text, out), ok) << text;
        if (ok) { EXPECT_EQ(out, test_support::join({labels, tail})) << text; }
    }
}

}  // namespace

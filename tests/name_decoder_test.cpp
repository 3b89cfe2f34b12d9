#include "dns/name_decoder.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/fixtures.h"

namespace {

using bytes = std::vector<std::uint8_t>;

// A zeroed 12-byte header, then `body`: the first name starts at offset 12.
std::uint32_t decode(const bytes& body, std::uint32_t offset, std::string& out) {
    const bytes m = test_support::join({bytes(12, 0), body});
    return read_name(m.data(), static_cast<std::int32_t>(m.size()), offset, out);
}

TEST(NameDecoder, NamesAndFaults) {
    // What, bytes from offset 12, offset read at, bytes the name takes (0: a fault), text.
    const std::tuple<const char*, bytes, std::uint32_t, std::uint32_t, std::string> rows[] = {
        {"root", {0}, 12, 1, ""}, {"full name", {1, 'a', 2, 'b', 'c', 0}, 12, 6, "a.bc."},
        {"zero byte inside a label", {2, 'a', 0, 0}, 12, 4, std::string("a\0.", 3)},
        {"labels, then pointer", {1, 'a', 0, /* 15: */ 1, 'b', 0xc0, 12}, 15, 4, "b.a."},
        {"pointer to pointer", {1, 'a', 0, /* 15: */ 0xc0, 12, /* 17: */ 0xc0, 15}, 17, 2, "a."},
        {"forward pointer", {0xc0, 14, /* 14: */ 1, 'a', 0}, 12, 2, "a."},
        {"pointer to itself", {0xc0, 12}, 12, 0, ""}, {"pointer loop", {0xc0, 14, /* 14: */ 0xc0, 12}, 12, 0, ""},
        {"no closing zero", {1, 'a'}, 12, 0, ""}, {"label past the end", {5, 'a', 'b'}, 12, 0, ""},
        {"pointer cut in half", {0xc0}, 12, 0, ""}, {"pointer target at the end", {0xc0, 14}, 12, 0, ""},
        {"pointer target past the end", {0xc0, 15}, 12, 0, ""}, {"offset 0", {0}, 0, 0, ""},
        {"offset at the end", {0}, 13, 0, ""}, {"offset past the end", {0}, 14, 0, ""},
    };
    for (const auto& [what, body, offset, count, text] : rows) {
        std::string out = "stale";
        EXPECT_EQ(decode(body, offset, out), count) << what;
        if (count != 0) { EXPECT_EQ(out, text) << what; }
    }
    std::string out;
    EXPECT_EQ(read_name(nullptr, 64, 12, out), 0u);
    const bytes short_header(11, 0);
    EXPECT_EQ(read_name(short_header.data(), 11, 10, out), 0u);
}

TEST(NameDecoder, LongLabelsAndStepLimit) {
    // 0x40 and 0x80 are plain lengths; 63 bytes end at the message's last byte.
    for (std::uint8_t length : {0x40, 0x80, 0x3f}) {
        std::string out;
        EXPECT_EQ(decode(test_support::join({{length}, bytes(length, 'x'), {0}}), 12, out), length + 2u);
        EXPECT_EQ(out, std::string(length, 'x') + ".");
    }
    // 98 labels and the closing zero fit the 99 steps; 99 labels do not.
    for (int labels : {98, 99}) {
        bytes body;
        for (int i = 0; i < labels; ++i) body.insert(body.end(), {1, 'z'});
        body.push_back(0);
        std::string out;
        EXPECT_EQ(decode(body, 12, out), labels == 98 ? 197u : 0u) << labels;
    }
}

}  // namespace

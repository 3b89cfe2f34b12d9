#include "dns/name_decoder.h"

#include <tuple>

#include "support/fixtures.h"

namespace {

using bytes = std::vector<std::uint8_t>;
using test_support::join;

TEST(NameDecoder, NamesAndFaults) {
    bytes labels98;  // 98 labels and the closing zero fit the 99 steps; 99 labels do not
    std::string z98;
    for (int i = 0; i < 98; ++i) labels98.insert(labels98.end(), {1, 'z'}), z98 += "z.";
    const bytes labels99 = join({{1, 'z'}, labels98, {0}});
    labels98.push_back(0);
    // What, bytes from offset 12, offset read at, bytes the name takes (0: a fault), text.
    const std::tuple<const char*, bytes, std::uint32_t, std::uint32_t, std::string> rows[] = {
        {"root", {0}, 12, 1, ""},
        {"zero byte inside a label", {2, 'a', 0, 0}, 12, 4, std::string("a\0.", 3)},
        {"labels, then pointer", {1, 'a', 0, /* 15: */ 1, 'b', 0xc0, 12}, 15, 4, "b.a."},
        {"pointer to pointer", {1, 'a', 0, /* 15: */ 0xc0, 12, /* 17: */ 0xc0, 15}, 17, 2, "a."},
        {"forward pointer", {0xc0, 14, /* 14: */ 1, 'a', 0}, 12, 2, "a."},
        {"63 bytes to the last one", join({{0x3f}, bytes(0x3f, 'x'), {0}}), 12, 65, std::string(63, 'x') + "."},
        {"0x80 is a plain length", join({{0x80}, bytes(0x80, 'x'), {0}}), 12, 130, std::string(128, 'x') + "."},
        {"98 labels", labels98, 12, 197, z98},
        {"99 labels", labels99, 12, 0, ""},
        {"pointer loop", {0xc0, 14, /* 14: */ 0xc0, 12}, 12, 0, ""},
        {"no closing zero", {1, 'a'}, 12, 0, ""},
        {"label past the end", {5, 'a', 'b'}, 12, 0, ""},
        {"pointer cut in half", {0xc0}, 12, 0, ""},
        {"pointer past the end", {0xc0, 15}, 12, 0, ""},
        {"offset 0", {0}, 0, 0, ""},
        {"offset 13", {0}, 13, 0, ""},
    };
    for (const auto& [what, body, offset, count, text] : rows) {
        const bytes m = join({bytes(12, 0), body});  // a zeroed header first
        std::string out = "stale";
        wire_reader wire(m);
        wire.seek(offset);
        const std::uint32_t used = read_name(wire, out);
        EXPECT_EQ(used, count) << what;
        EXPECT_EQ(wire.pos(), offset + count) << what << ": the cursor stays put on a fault";
        if (count != 0) { EXPECT_EQ(out, text) << what; }  // after a fault the text is not to be used
    }
}

}  // namespace

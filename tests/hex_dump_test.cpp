#include "report/hex_dump.h"

#include <gtest/gtest.h>

#include "support/fixtures.h"

namespace {

std::string dump(const std::vector<std::uint8_t>& bytes) {
    test_support::string_output out;
    dump_packet(bytes, out);
    return out.text();
}

TEST(HexDump, SampleQueryByteForByte) {
    EXPECT_EQ(dump(test_support::join({{0x2a, 0, 0x01, 0, 0, 1, 0, 0, 0, 0, 0, 0},  // ID 42, RD, QD 1
                                       {1, 'a', 1, 'b', 0, 0, 1, 0, 1}})),        // a.b. A IN
              "0000 0000:  2a 00 01 00 00 01 00 00  00 00 00 00 01 61 01 62  *............a.b\r\n"
              "0000 0010:  00 00 01 00 01                                    .....\r\n");
}

TEST(HexDump, ShortRowsKeepTheTextColumnInPlace) {
    // Bytes 0x41, 0x42, ... so the text column reads A, B, ...
    const std::pair<std::size_t, std::string> cases[] = {
        {1, "0000 0000:  41" + std::string(47, ' ') + " A"},
        {8, "0000 0000:  41 42 43 44 45 46 47 48 " + std::string(25, ' ') + " ABCDEFGH"},
        {9, "0000 0000:  41 42 43 44 45 46 47 48  49 " + std::string(21, ' ') + " ABCDEFGHI"},
        {16, "0000 0000:  41 42 43 44 45 46 47 48  49 4a 4b 4c 4d 4e 4f 50  ABCDEFGHIJKLMNOP"},
    };
    for (const auto& [count, row] : cases) {
        std::vector<std::uint8_t> bytes;
        for (std::size_t i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(0x41 + i));
        EXPECT_EQ(dump(bytes), row + "\r\n") << count;
    }
}

TEST(HexDump, ThirtyThreeBytesGiveThreeRows) {
    std::vector<std::uint8_t> bytes(33, 0x7f);
    bytes[0] = 0x80;
    bytes[32] = 0x20;
    const std::string sevens = " 7f 7f 7f 7f 7f 7f 7f", dots(16, '.');
    EXPECT_EQ(dump(bytes), "0000 0000:  80" + sevens + "  7f" + sevens + "  " + dots + "\r\n0000 0010:  7f" + sevens +
                               "  7f" + sevens + "  " + dots + "\r\n0000 0020:  20 " + std::string(46, ' ') + "  \r\n");
}

TEST(HexDump, EdgesOfPacketAndOffset) {
    EXPECT_EQ(dump({}), "");
    test_support::string_output out(4096);
    dump_rows(out, std::vector<std::uint8_t>{1, 2}, 100);  // a count beyond the packet
    EXPECT_EQ(out.writes, 0u) << "rows wait for the caller's next line end";
    const std::vector<std::uint8_t> a = {0x41};
    dump_row(out, a, 0, 1, 0x5'0000'0010);  // offsets above 4 GiB get more groups
    dump_row(out, a, 0, 1, 0x0001'0002'0003'0004);
    EXPECT_EQ(out.text(), "0000 0000:  01 02" + std::string(45, ' ') + "..\r\n0005 0000 0010:  41" +
                              std::string(47, ' ') + " A0001 0002 0003 0004:  41" + std::string(47, ' ') + " A");
}

}  // namespace

#include "report/hex_dump.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Collects the report; its line ends arrive as CR LF.
struct string_output final : uni::output_stream {
    explicit string_output(std::size_t buffer_size = 64) : output_stream(buffer_size) {}
    const std::string& text() {
        flush_buffer();
        return bytes;
    }
    bool write_bytes(const char* data, std::size_t count) override {
        ++writes;
        bytes.append(data, count);
        return true;
    }
    std::string bytes;
    std::size_t writes = 0;
};

std::string dump(const std::vector<std::uint8_t>& bytes) {
    string_output out;
    dump_packet(bytes, out);
    return out.text();
}

TEST(HexDump, SampleQueryByteForByte) {
    const std::vector<std::uint8_t> query = {
        0x2a, 0x00, 0x01, 0x00,  // ID 42, RD
        0x00, 0x01, 0x00, 0x00,  // QDCOUNT 1
        0x00, 0x00, 0x00, 0x00,
        0x01, 'a', 0x01, 'b', 0x00,  // a.b
        0x00, 0x01, 0x00, 0x01,      // A IN
    };
    EXPECT_EQ(dump(query),
              "0000 0000:  2a 00 01 00 00 01 00 00  00 00 00 00 01 61 01 62  *............a.b\r\n"
              "0000 0010:  00 00 01 00 01                                    .....\r\n");
}

TEST(HexDump, ShortRowsKeepTheTextColumnInPlace) {
    struct row_case {
        std::size_t count;
        std::string row;
    };
    // Bytes 0x41, 0x42, ... so the text column reads A, B, ...
    const row_case cases[] = {
        {1, "0000 0000:  41" + std::string(47, ' ') + " A"},
        {8, "0000 0000:  41 42 43 44 45 46 47 48 " + std::string(25, ' ') + " ABCDEFGH"},
        {9, "0000 0000:  41 42 43 44 45 46 47 48  49 " + std::string(21, ' ') + " ABCDEFGHI"},
        {16, "0000 0000:  41 42 43 44 45 46 47 48  49 4a 4b 4c 4d 4e 4f 50  ABCDEFGHIJKLMNOP"},
    };
    for (const auto& c : cases) {
        std::vector<std::uint8_t> bytes;
        for (std::size_t i = 0; i < c.count; ++i)
            bytes.push_back(static_cast<std::uint8_t>(0x41 + i));
        std::string text = dump(bytes);
        EXPECT_EQ(text, c.row + "\r\n") << c.count;
        EXPECT_EQ(text.find('A'), 62u) << c.count;  // character 63 of the line
    }
}

TEST(HexDump, ThirtyThreeBytesGiveThreeRows) {
    std::vector<std::uint8_t> bytes(33, 0x7f);
    bytes[32] = 0x20;
    bytes[0] = 0x80;
    std::string text = dump(bytes);
    const std::string dots(16, '.');
    EXPECT_EQ(text,
              "0000 0000:  80 7f 7f 7f 7f 7f 7f 7f  7f 7f 7f 7f 7f 7f 7f 7f  " + dots + "\r\n" +
                  "0000 0010:  7f 7f 7f 7f 7f 7f 7f 7f  7f 7f 7f 7f 7f 7f 7f 7f  " + dots + "\r\n" +
                  "0000 0020:  20 " + std::string(46, ' ') + "  \r\n");
}

TEST(HexDump, EmptyPacketAndCountsBeyondThePacket) {
    EXPECT_EQ(dump({}), "");
    string_output out;
    const std::vector<std::uint8_t> bytes = {0x01, 0x02};
    dump_rows(out, bytes, 100);
    EXPECT_EQ(out.text(), "0000 0000:  01 02" + std::string(45, ' ') + "..\r\n");
}

TEST(HexDump, RowsAreNotFlushedOneByOne) {
    // The flush comes with the next line the caller ends, not per row.
    string_output out(4096);
    std::vector<std::uint8_t> bytes(40, 0);
    dump_packet(bytes, out);
    EXPECT_EQ(out.writes, 0u);
}

TEST(HexDump, OffsetsAbove4GiBGetMoreGroups) {
    const std::vector<std::uint8_t> bytes = {0x41};
    string_output out;
    dump_row(out, bytes, 0, 1, 0x5'0000'0010);
    dump_row(out, bytes, 0, 1, 0x0001'0002'0003'0004);
    const std::string& text = out.text();
    EXPECT_EQ(text.substr(0, 19), "0005 0000 0010:  41");
    EXPECT_EQ(text.substr(text.find('A') + 1, 24), "0001 0002 0003 0004:  41");
}

}  // namespace

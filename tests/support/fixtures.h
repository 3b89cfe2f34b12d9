#pragma once
// What the unit tests share: packets from byte groups, a record as a reply
// would hold it, a temporary directory.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <initializer_list>
#include <stdlib.h>
#include <string>
#include <vector>

#include "dns/dns_entry.h"
#include "support/string_output.h"
#include "timefmt/time_parts.h"

namespace test_support {

// Byte groups joined into one packet, so it can be written group by group
// with a comment for each.
inline std::vector<std::uint8_t> join(std::initializer_list<std::vector<std::uint8_t>> groups) {
    std::vector<std::uint8_t> bytes;
    for (const auto& group : groups) bytes.insert(bytes.end(), group.begin(), group.end());
    return bytes;
}

// 2026-11-19 09:05:07.042 UTC.
inline const std::uint64_t sample_ticks = fields_to_ticks(2026, 11, 19, 9, 5, 7, 42);

// One record of `type` in a reply to "a.b. A IN" (ID 42, server 8.8.8.8),
// its RDATA at the very end (offset 33), so a name that runs on falls off.
inline dns_entry record_entry(std::uint16_t type, const std::vector<std::uint8_t>& rdata, bool answer = true) {
    const auto hi = [](unsigned v) { return static_cast<std::uint8_t>(v >> 8); };
    const auto lo = [](unsigned v) { return static_cast<std::uint8_t>(v); };
    return {.packet = shared_packet(join({{0x2a, 0x00, 0x81, 0x80, 0, 1, 0, 1, 0, 0, 0, 0},        // ID 42, QR RD RA
                                          {1, 'a', 1, 'b', 0, 0, 1, 0, 1},                         // 12: a.b. A IN
                                          {0xc0, 12, hi(type), lo(type), 0, 1},                    // 21: a.b. <type> IN
                                          {0, 0, 0x01, 0x2c, hi(rdata.size()), lo(rdata.size())},  // TTL 300
                                          rdata})),
            .dns_server = "8.8.8.8", .query = "a.b.", .dns_type = type, .dns_class = 1, .ttl_secs = 300,
            .data_length = static_cast<std::uint16_t>(rdata.size()), .data_offset = 33, .query_time = sample_ticks,
            .packet_id = 42, .has_raw_data = answer};
}

// A fresh directory under the system's temporary one, removed with all it holds.
struct temp_dir {
    std::filesystem::path root;
    temp_dir() {
        std::string name = (std::filesystem::temp_directory_path() / "vexa_XXXXXX").string();
        if (::mkdtemp(name.data())) root = name;
        EXPECT_FALSE(root.empty());
    }
    ~temp_dir() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    std::string operator/(const std::string& name) const { return (root / name).string(); }
    // Writes the file, and the directories above it, with `bytes`.
    std::string put(const std::string& name, const std::string& bytes = {}) const {
        std::filesystem::create_directories((root / name).parent_path());
        std::ofstream(root / name, std::ios::binary) << bytes;
        return *this / name;
    }
};

}  // namespace test_support

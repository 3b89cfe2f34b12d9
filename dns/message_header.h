#pragma once
// The fixed header in front of every message, and the byte order of its ID.

#include <cstddef>
#include <cstdint>

#include "dns/wire_reader.h"

inline constexpr std::size_t header_size = 12;

// The ID is held with the message's first byte as its low byte, on the way
// out and on the way in alike.
inline void put_packet_id(std::uint16_t id, std::uint8_t* first_two) {
    first_two[0] = static_cast<std::uint8_t>(id & 0xff);
    first_two[1] = static_cast<std::uint8_t>(id >> 8);
}
inline std::uint16_t read_packet_id(wire_reader& wire) {
    const std::uint8_t low = wire.u8();
    return static_cast<std::uint16_t>(low | (wire.u8() << 8));
}

#pragma once
// Offset, hexadecimal and ASCII listing of a packet, 16 bytes a row.

#include <cstddef>
#include <cstdint>
#include <span>

#include "report/output_stream.h"

// An empty packet writes nothing.
void dump_packet(std::span<const std::uint8_t> bytes, uni::output_stream& out);
void dump_rows(uni::output_stream& out, std::span<const std::uint8_t> bytes, std::size_t count);
// One row of 1 to 16 bytes, without its line feed.
void dump_row(uni::output_stream& out, std::span<const std::uint8_t> bytes, std::size_t start,
              std::size_t count, std::uint64_t shown_offset);

#pragma once
// Pieces of a report cell shared by the text and XML writers. Everything is
// written straight into the stream from stack buffers: a row allocates nothing.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "dns/dns_entry.h"
#include "report/output_stream.h"

namespace cells {

// The record's data inside its packet: data_length bytes from data_offset,
// clipped to the packet so that no cell can read past it.
std::span<const std::uint8_t> record_data(const dns_entry& entry);

// Unsigned number in base 10 or 16 (lower case), right-aligned in `width`
// with `pad`. Never cut.
void write_number(uni::output_stream& out, std::uint64_t value, int base = 10,
                  std::size_t width = 0, char pad = ' ');

// Text padded with blanks on the right, or on the left, to `width`.
void write_left(uni::output_stream& out, std::string_view text, std::size_t width);
void write_right(uni::output_stream& out, std::string_view text, std::size_t width);

// Each byte as two lower-case hex digits, joined by one blank.
void write_hex_bytes(uni::output_stream& out, std::span<const std::uint8_t> bytes);

// Four bytes in decimal joined by ".".
void write_ipv4(uni::output_stream& out, std::span<const std::uint8_t, 4> bytes);

// The name at `offset` of the entry's packet into `name`. False, with `name`
// empty, if it can't be read.
bool read_packet_name(const dns_entry& entry, std::uint32_t offset, std::string& name);

// read_soa on the entry's packet at its data_offset.
bool read_packet_soa(const dns_entry& entry, soa_data& soa);

}  // namespace cells

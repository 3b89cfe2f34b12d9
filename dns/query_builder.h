#pragma once
// Builds the one message a query sends: a 12-byte header and one question.

#include <cstdint>
#include <string_view>

#include "dns/bytes.h"
#include "dns/dns_entry.h"

// Fills `entry` with a query for `text` of record type `type`. False (and
// `entry` reset) when the text can't be encoded.
bool build_query(dns_entry& entry, std::string_view text, std::uint32_t type);

// Appends the QNAME of a name behind what `out` holds: its non-empty
// stretches between dots as labels of up to 255 bytes, closed by a zero
// byte. False for empty or dots-only text; `out` may then hold part of a name.
bool encode_name(std::string_view text, byte_list& out);

// A number of two decimal digits (10 to 99); the generator is seeded once per process.
std::uint16_t make_packet_id();

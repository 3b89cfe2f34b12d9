#pragma once
// What the data of a record holds, decoded from the entry's own copy of the
// message when the record is written: names, the SOA fields, the MX
// preference. The bound of every read is the whole message, not RDLENGTH.

#include <cstdint>
#include <string>

#include "dns/dns_entry.h"

// The name at `offset` of the entry's packet. False, with `name` empty, if
// it can't be read.
bool decode_name(const dns_entry& entry, std::uint32_t offset, std::string& name);

// The SOA at the entry's data_offset. On false, `soa` must not be used.
bool decode_soa(const dns_entry& entry, soa_data& soa);

// The MX preference at the entry's data_offset (so a record shorter than its
// preference takes the bytes that follow it). False when the preference
// would reach behind the end of the packet; what lies there then reads 0.
bool decode_mx_preference(const dns_entry& entry, std::uint16_t& preference);

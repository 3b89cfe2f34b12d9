#include "dns/record_data.h"

#include "dns/name_decoder.h"
#include "dns/wire_reader.h"

namespace {
// A cursor on the entry's packet at `offset`; false when that is not inside it.
bool cursor_at(const dns_entry& entry, std::uint32_t offset, wire_reader& wire) {
    if (offset >= entry.packet.size()) return false;
    wire.seek(offset);
    return true;
}
}  // namespace

bool decode_name(const dns_entry& entry, std::uint32_t offset, std::string& name) {
    name.clear();
    wire_reader wire(entry.packet.bytes());
    if (cursor_at(entry, offset, wire) && read_name(wire, name) != 0) return true;
    name.clear();  // what a failed read left behind is not a name
    return false;
}

bool decode_soa(const dns_entry& entry, soa_data& soa) {
    soa = soa_data{};
    wire_reader wire(entry.packet.bytes());
    if (!cursor_at(entry, entry.data_offset, wire)) return false;
    if (read_name(wire, soa.domain_name) == 0 || read_name(wire, soa.admin_mailbox) == 0) return false;
    soa.serial_num = wire.u32();
    soa.refresh_sec = wire.u32();
    soa.retry_sec = wire.u32();
    soa.expire_sec = wire.u32();
    soa.min_sec = wire.u32();
    return !wire.overrun();
}

bool decode_mx_preference(const dns_entry& entry, std::uint16_t& preference) {
    wire_reader wire(entry.packet.bytes());
    wire.seek(entry.data_offset);
    preference = wire.u16();
    return !wire.overrun();
}

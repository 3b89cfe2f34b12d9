#include "report/cells.h"

#include <algorithm>
#include <utility>

#include "dns/name_decoder.h"
#include "dns/reply_parser.h"
#include "dns/wire_reader.h"

namespace cells {

void row_text::grow(std::size_t count) {
    // Doubling keeps a long hex cell from growing the row many times.
    std::size_t capacity = capacity_ * 2;
    if (capacity - used_ < count) capacity = used_ + count;
    std::unique_ptr<char[]> data(new char[capacity]);
    std::memcpy(data.get(), data_.get(), used_);
    data_ = std::move(data);
    capacity_ = capacity;
}

std::span<const std::uint8_t> record_data(const dns_entry& entry) {
    std::span<const std::uint8_t> packet = entry.packet.bytes();
    if (entry.data_offset >= packet.size()) return {};
    return packet.subspan(entry.data_offset)
        .first(std::min<std::size_t>(entry.data_length, packet.size() - entry.data_offset));
}

bool read_packet_name(const dns_entry& entry, std::uint32_t offset, std::string& name) {
    name.clear();
    if (entry.packet.empty() || offset >= entry.packet.size()) return false;
    if (read_name(entry.packet.bytes(), offset, name) != 0) return true;
    name.clear();  // what a failed read left behind is not a name
    return false;
}

bool read_packet_soa(const dns_entry& entry, soa_data& soa) {
    if (entry.packet.empty() || entry.data_offset >= entry.packet.size()) return false;
    return read_soa(entry.packet.bytes(), entry.data_offset, soa);
}

bool read_mx_preference(const dns_entry& entry, std::uint16_t& preference) {
    wire_reader wire(entry.packet.bytes());
    wire.seek(entry.data_offset);
    preference = wire.u16();
    return !wire.overrun();
}

}  // namespace cells

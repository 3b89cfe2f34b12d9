#include "report/cells.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "dns/name_decoder.h"
#include "dns/reply_parser.h"
#include "timefmt/formats.h"
#include "timefmt/time_parts.h"

namespace cells {

namespace {

// The decoders take the message length as a signed 32-bit count.
std::int32_t packet_length(const dns_entry& entry) {
    constexpr std::size_t limit = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(entry.packet.size() < limit ? entry.packet.size() : limit);
}

}  // namespace

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
    return packet.subspan(entry.data_offset).first(
        std::min<std::size_t>(entry.data_length, packet.size() - entry.data_offset));
}

bool read_packet_name(const dns_entry& entry, std::uint32_t offset, std::string& name) {
    name.clear();
    if (entry.packet.empty() || offset >= entry.packet.size()) return false;
    if (read_name(entry.packet.data(), packet_length(entry), offset, name) != 0) return true;
    name.clear();  // what a failed read left behind is not a name
    return false;
}

bool read_packet_soa(const dns_entry& entry, soa_data& soa) {
    if (entry.packet.empty() || entry.data_offset >= entry.packet.size()) return false;
    return read_soa(entry.packet.data(), packet_length(entry), entry.data_offset, soa);
}

date_time_texts render_instant(std::uint64_t ticks, std::uint32_t format_word) {
    struct kept_texts {
        std::uint64_t ticks = 0;
        std::uint32_t word = 0;
        bool filled = false;
        std::string date;
        std::string time;
    };
    thread_local kept_texts kept;
    if (!kept.filled || kept.ticks != ticks || kept.word != format_word) {
        render_date_time(kept.date, kept.time, time_parts(ticks), format_word);
        kept.ticks = ticks;
        kept.word = format_word;
        kept.filled = true;
    }
    return {kept.date, kept.time};
}

}  // namespace cells

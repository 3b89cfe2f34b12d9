#include "report/cells.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "dns/name_decoder.h"
#include "dns/reply_parser.h"

namespace cells {

namespace {

constexpr char hex_digits[] = "0123456789abcdef";

// The decoders take the message length as a signed 32-bit count.
std::int32_t packet_length(const dns_entry& entry) {
    constexpr std::size_t limit = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(entry.packet.size() < limit ? entry.packet.size() : limit);
}

}  // namespace

std::span<const std::uint8_t> record_data(const dns_entry& entry) {
    std::span<const std::uint8_t> packet = entry.packet.bytes();
    if (entry.data_offset >= packet.size()) return {};
    return packet.subspan(entry.data_offset).first(
        std::min<std::size_t>(entry.data_length, packet.size() - entry.data_offset));
}

void write_number(uni::output_stream& out, std::uint64_t value, int base, std::size_t width,
                  char pad) {
    char digits[24];
    auto end = std::to_chars(digits, digits + sizeof digits, value, base).ptr;
    std::size_t size = static_cast<std::size_t>(end - digits);
    if (size < width) out.fill(pad, width - size);
    out.write(digits, size);
}

void write_left(uni::output_stream& out, std::string_view text, std::size_t width) {
    out.write(text);
    if (text.size() < width) out.fill(' ', width - text.size());
}

void write_right(uni::output_stream& out, std::string_view text, std::size_t width) {
    if (text.size() < width) out.fill(' ', width - text.size());
    out.write(text);
}

void write_hex_bytes(uni::output_stream& out, std::span<const std::uint8_t> bytes) {
    // In chunks through a stack buffer: one stream call per 64 bytes.
    char chunk[64 * 3];
    std::size_t used = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i != 0) chunk[used++] = ' ';
        chunk[used++] = hex_digits[bytes[i] >> 4];
        chunk[used++] = hex_digits[bytes[i] & 0xf];
        if (used > sizeof chunk - 3) {
            out.write(chunk, used);
            used = 0;
        }
    }
    out.write(chunk, used);
}

void write_ipv4(uni::output_stream& out, std::span<const std::uint8_t, 4> bytes) {
    for (std::size_t i = 0; i < 4; ++i) {
        if (i != 0) out.put('.');
        write_number(out, bytes[i]);
    }
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

}  // namespace cells

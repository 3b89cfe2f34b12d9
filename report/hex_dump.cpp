#include "report/hex_dump.h"

#include <algorithm>
#include <array>

#include "platform/digits.h"

namespace {

constexpr std::size_t row_bytes = 16;

// The text column: printable ASCII as it is, every other byte as ".".
constexpr std::array<char, 256> shown_chars = [] {
    std::array<char, 256> chars{};
    for (std::size_t value = 0; value < 256; ++value)
        chars[value] = value >= 32 && value <= 126 ? static_cast<char>(value) : '.';
    return chars;
}();
constexpr std::size_t hex_part_width = 49;  // 16 bytes of "xx " and the middle gap

// Four hex digits of the low 16 bits.
char* put_group(char* p, std::uint64_t value) {
    const char* high = digits::hex_pairs.data() + 2 * ((value >> 8) & 0xff);
    const char* low = digits::hex_pairs.data() + 2 * (value & 0xff);
    p[0] = high[0];
    p[1] = high[1];
    p[2] = low[0];
    p[3] = low[1];
    return p + 4;
}

// Two groups of four digits; offsets above 4 GiB get one or two groups more.
char* put_offset(char* p, std::uint64_t offset) {
    if ((offset >> 32) != 0) {
        if ((offset >> 48) != 0) {
            p = put_group(p, offset >> 48);
            *p++ = ' ';
        }
        p = put_group(p, (offset >> 32) & 0xffff);
        *p++ = ' ';
    }
    p = put_group(p, (offset >> 16) & 0xffff);
    *p++ = ' ';
    return put_group(p, offset & 0xffff);
}

}  // namespace

void dump_row(uni::output_stream& out, std::span<const std::uint8_t> bytes, std::size_t start,
              std::size_t count, std::uint64_t shown_offset) {
    // Never read past the packet, whatever the caller asked for.
    if (start > bytes.size()) start = bytes.size();
    count = std::min({count, row_bytes, bytes.size() - start});
    const std::uint8_t* row = bytes.data() + start;

    // Offset (up to 19) + ":  " + 49 + gap + 16 text characters.
    char line[96];
    char* p = put_offset(line, shown_offset);
    *p++ = ':';
    *p++ = ' ';
    *p++ = ' ';
    char* hex_start = p;
    for (std::size_t i = 0; i < count; ++i) {
        if (i == 8) *p++ = ' ';
        const char* pair = digits::hex_pairs.data() + 2 * row[i];
        p[0] = pair[0];
        p[1] = pair[1];
        p[2] = ' ';
        p += 3;
    }
    // Fill to the full width so the text column always starts in one place.
    while (p < hex_start + hex_part_width) *p++ = ' ';
    *p++ = ' ';
    for (std::size_t i = 0; i < count; ++i) *p++ = shown_chars[row[i]];
    // Printable bytes only: no LF to translate.
    out.write_plain(std::string_view(line, static_cast<std::size_t>(p - line)));
}

void dump_rows(uni::output_stream& out, std::span<const std::uint8_t> bytes, std::size_t count) {
    count = std::min(count, bytes.size());
    for (std::size_t start = 0; start < count; start += row_bytes) {
        dump_row(out, bytes, start, std::min(row_bytes, count - start), start);
        // A plain line feed: the flush comes with the next line the caller ends.
        out.put('\n');
    }
}

void dump_packet(std::span<const std::uint8_t> bytes, uni::output_stream& out) {
    if (bytes.empty()) return;
    dump_rows(out, bytes, bytes.size());
}

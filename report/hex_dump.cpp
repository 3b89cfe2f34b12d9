#include "report/hex_dump.h"

#include <algorithm>

namespace {

constexpr char hex_digits[] = "0123456789abcdef";
constexpr std::size_t row_bytes = 16;
constexpr std::size_t hex_part_width = 49;  // 16 bytes of "xx " and the middle gap

char* put_group(char* p, std::uint64_t value) {
    for (int shift = 12; shift >= 0; shift -= 4) *p++ = hex_digits[(value >> shift) & 0xf];
    return p;
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
        if (i != 0 && i % 8 == 0) *p++ = ' ';
        *p++ = hex_digits[row[i] >> 4];
        *p++ = hex_digits[row[i] & 0xf];
        *p++ = ' ';
    }
    // Fill to the full width so the text column always starts in one place.
    while (p < hex_start + hex_part_width) *p++ = ' ';
    *p++ = ' ';
    for (std::size_t i = 0; i < count; ++i)
        *p++ = row[i] >= 32 && row[i] <= 126 ? static_cast<char>(row[i]) : '.';
    out.write(line, static_cast<std::size_t>(p - line));
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

// Fuzz target: the date and time formats, the rendering of an instant with
// them, and the readers of the date and clock texts of the time bounds.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/fuzz_input.h"
#include "timefmt/formats.h"
#include "timefmt/time_parts.h"

namespace {

constexpr std::uint64_t ticks_per_millisecond = 10000;

// Up to eight bytes, low byte first.
std::uint64_t read_ticks(std::string_view bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes.size() && i < 8; ++i)
        value |= std::uint64_t{static_cast<std::uint8_t>(bytes[i])} << (8 * i);
    return value;
}

void render(const time_parts& parts, std::uint32_t word) {
    thread_local std::string date_text, time_text;
    render_date_time(date_text, time_text, parts, word);
    if (parts.valid && time_text.size() < 8) std::abort();
}

// Calendar fields back to ticks give the instant again, to the millisecond.
void check_round_trip(std::uint64_t ticks, const time_parts& parts) {
    if (!parts.valid) return;
    const std::uint64_t back = fields_to_ticks(parts.year, parts.month, parts.day, parts.hour, parts.minute,
                                               parts.second, parts.millisecond);
    if (back != ticks - ticks % ticks_per_millisecond) std::abort();
}

void read_bound(std::string_view date, std::string_view clock, std::string_view order, char delimiter,
                std::uint32_t word) {
    std::uint32_t day = 0, month = 0, year = 0;
    parse_date(date, order, delimiter, day, month, year);
    double hours = 0, minutes = 0, seconds = 0;
    parse_clock(clock, hours, minutes, seconds);
    calendar_fields fields;
    if (!parse_date_time(date, clock, order, delimiter, fields)) return;
    const std::uint64_t ticks = fields_to_ticks(fields.year, fields.month, fields.day, fields.hour,
                                                fields.minute, fields.second, fields.millisecond);
    render(time_parts(ticks), word);
}

}  // namespace

// Pieces: date format, time format, date text, clock text, field order,
// delimiter (its first byte), instant (up to eight bytes, low first).
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto list = fuzz_input::pieces(data, size);
    const std::string_view date_format = fuzz_input::piece(list, 0);
    const std::string_view time_format = fuzz_input::piece(list, 1);
    const std::string_view delimiter_piece = fuzz_input::piece(list, 5);
    const char delimiter = delimiter_piece.empty() ? '-' : delimiter_piece.front();
    const std::uint64_t ticks = read_ticks(fuzz_input::piece(list, 6));

    date_format_acceptable(date_format);
    time_format_acceptable(time_format);
    time_column_width(time_format);
    std::uint32_t word = 0;
    compile_formats(word, date_format, time_format, false);
    std::uint32_t paired = 0;
    compile_formats(paired, date_format, time_format, true);

    const time_parts parts(ticks);
    check_round_trip(ticks, parts);
    render(parts, word);
    render(parts, paired);
    // Any word at all, not only one the formats can make.
    render(parts, static_cast<std::uint32_t>(ticks ^ (ticks >> 32)));
    month_name(parts.month);
    calendar_fields fields;
    ticks_to_fields(ticks, fields);

    read_bound(fuzz_input::piece(list, 2), fuzz_input::piece(list, 3), fuzz_input::piece(list, 4), delimiter,
               word);
    return 0;
}

#pragma once
// The date and time formats of the report, reduced once to a 32-bit word.

#include <cstdint>
#include <string>
#include <string_view>

#include "timefmt/time_parts.h"

namespace fmt_bits {
inline constexpr std::uint32_t separator_mask = 0xff;
inline constexpr std::uint32_t month_name = 0x100;
inline constexpr std::uint32_t month_digits = 0x200;
inline constexpr std::uint32_t year4 = 0x400;
inline constexpr std::uint32_t year2 = 0x800;
inline constexpr std::uint32_t order_dmy = 0x2000;
inline constexpr std::uint32_t order_mdy = 0x4000;
inline constexpr std::uint32_t order_ymd = 0x8000;
inline constexpr std::uint32_t pair_datetime = 0x10000;
inline constexpr unsigned fraction_shift = 17;
inline constexpr std::uint32_t fraction_mask = 0x1e0000;
}  // namespace fmt_bits

// Option texts accepted by -dateformat / -timeformat (before lower-casing).
bool date_format_acceptable(std::string_view text);
bool time_format_acceptable(std::string_view text);

// Fills `word` from the two format texts. False if the date format could not
// be understood (the word then holds what was found so far).
bool compile_formats(std::uint32_t& word, std::string_view date_format, std::string_view time_format,
                     bool pair_datetime);

// Width of the time column of the padded text layout.
std::size_t time_column_width(std::string_view time_format);

// "Jan" .. "Dec"; empty outside 1 to 12.
std::string_view month_name(unsigned number);

// Date and time texts of an instant. Both empty if `parts` is not valid.
void render_date_time(std::string& date_text, std::string& time_text, const time_parts& parts,
                      std::uint32_t word);

#pragma once
// Text and number helpers shared by the whole tool.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

// Letters A to Z to lower case, nothing else.
void to_lower(std::string& text);
void to_lower(std::u16string& text);

// Equal length, and equal with the letters A to Z lower-cased.
bool same_text(std::string_view a, std::string_view b);
bool same_text(std::u16string_view a, std::u16string_view b);

// Byte text: blanks, tabs, CRs and LFs off both ends. False if nothing remains.
bool trim_text(std::string& text);
// Wide text: blanks at both ends, then tabs at both ends, then CRs at the
// end, then LFs at the end. False if nothing remains.
bool trim_text(std::u16string& text);
// The wide rule on byte text: path text keeps the rules of wide text.
bool trim_each_kind(std::string& text);

// Cuts text at a single-character delimiter, appending the non-empty pieces
// (trimmed if asked) to list; emptied first unless keep_list. False when the
// text is empty.
bool split_text(std::string_view text, char delimiter, std::vector<std::string>& list, bool trim,
                bool keep_list);
// The wide form always empties list first.
bool split_text(std::u16string_view text, char16_t delimiter, std::vector<std::u16string>& list, bool trim);

// Reader of -timeout, -retry, -delay, -threads: "x" anywhere reads hex behind
// it, else "o" reads octal, else signed decimal saturating at 32 bits.
// False (value unchanged) for empty text or text that starts otherwise.
bool parse_number(std::string_view text, std::uint32_t& value);
// Reader of the other number options and date fields; value is 0 on false.
bool parse_number_c(std::string_view text, std::uint32_t& value);

// The number at the front of text as the C library's readers find it
// (strtoul, strtol, and a stream's extraction of an integer alike): white
// space, one sign, for base 16 an optional "0x", then as many digits of the
// base as there are; what follows is ignored, and no digits read as 0.
// Base 0 takes the base from the text: 16 behind "0x", 8 behind a leading 0,
// else 10.
struct scanned_number {
    std::uint64_t magnitude = 0;  // at most the limit asked for
    bool negative = false;
    bool overflow = false;  // the digits went beyond the limit
    std::size_t end = 0;    // index behind the last digit; 0 without digits
};
scanned_number scan_number(std::string_view text, int base, std::uint64_t limit);

// strtoul into an unsigned type of that width: a value too large for it
// gives all ones, a minus sign negates.
template <class Unsigned>
Unsigned read_unsigned(std::string_view text, int base) {
    constexpr Unsigned all_ones = std::numeric_limits<Unsigned>::max();
    const scanned_number number = scan_number(text, base, all_ones);
    if (number.overflow) return all_ones;
    const auto value = static_cast<Unsigned>(number.magnitude);
    return number.negative ? static_cast<Unsigned>(0u - value) : value;
}

// What the C library's decimal reader makes of a text: the same white space
// and sign, then a number that may have a fraction; 0 if there is none.
double read_decimal(std::string_view text);

#pragma once
// The input filter: which lines of a list are queried (-filter, -filter_sig,
// and the file-time bounds of -cmd_start_time / -cmd_stop_time).

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "input/filter_entry.h"

struct file_info;

// A file-time bound of -cmd_start_time / -cmd_stop_time.
struct time_bound {
    bool active = false;
    std::uint64_t file_time = 0;  // 100 ns ticks since 1601-01-01 UTC
    std::uint32_t unix_time = 0;  // seconds
};

// Which lines of a list are queried: set by the options, read by the list.
struct filter_settings {
    std::vector<filter_entry> entries;
    time_bound start;
    time_bound stop;
};

// Replaces entries by those of one -filter value (UTF-8): tokens split at
// "|" or, winning over it, at ","; a lone "*" passes everything. True if
// there is at least one entry.
bool parse_filter(std::string_view text, std::vector<filter_entry>& entries);

// One -filter_sig value: hex bytes split at blanks, then optionally an offset
// behind "|" or ",". Appends one signature entry if there are any bytes.
void parse_filter_sig(std::string_view value, std::vector<filter_entry>& entries);

// The offset reader of -filter_sig: "0x"/"x" hex (16 digits at most), "o"
// octal, else decimal, or octal behind a leading 0. value is 0 on false.
bool parse_offset(std::string_view text, std::uint64_t& value);

// Whether a line (wide text) passes: the file-time bounds, when facts is
// given and a bound is active (facts are read from the file named by text
// unless already filled), and then the entries.
bool match_filter(const filter_settings& filter, std::u16string_view text, file_info* facts);

// The entries alone, as the directory walk tests its file names.
bool match_entries(std::u16string_view text, const std::vector<filter_entry>& entries);

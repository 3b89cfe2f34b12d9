#pragma once
// What the report's writers read of the command line: made once per run by
// the driver and handed to them as const.

#include <cstddef>
#include <cstdint>
#include <string>

struct report_settings {
    bool xml_output = false;
    std::uint32_t format_word = 0;  // the compiled date and time forms
    // The text form (CSV is a setting of it).
    std::string date_format;  // its length sets the date cell's width
    std::string time_format;  // sets the time cell's width
    std::size_t server_width = 0;
    std::string separator = " | ";
    bool compact_columns = false;  // no padding, ";" between list items
    bool pair_blank = true;        // the blank behind the date in the compact layout
    char clash_char = '|';         // 0 = none: put in a query text as clash_subst
    char clash_subst = ';';
};

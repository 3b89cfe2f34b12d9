#pragma once
// Messages to the standard error. They go out as LF-ended bytes, unchanged.

#include <string_view>

// ESC "[2K" CR, four blanks, CR: wipes the current line of a terminal.
inline constexpr std::string_view erase_sequence{"\x1b[2K\r    \r", 10};

// Writes text to the standard error as it stands.
void write_error(std::string_view text);
// The erase sequence, then the message (dropped if above 4096 characters).
void print_error(std::string_view message);
// As print_error, with one %s in the format replaced by value.
void print_error(std::string_view format, std::string_view value);

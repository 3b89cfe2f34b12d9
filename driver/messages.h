#pragma once
// Messages to the standard error. They go out as LF-ended bytes, unchanged.

#include <string_view>

// ESC "[2K" CR, four blanks, CR: wipes the current line of a terminal.
inline constexpr std::string_view erase_sequence{"\x1b[2K\r    \r", 10};

// Writes text to the standard error as it stands.
void write_error(std::string_view text);
// As write_error, with the first %s in the format replaced by value.
void write_error(std::string_view format, std::string_view value);
// The erase sequence, then the message (dropped if above 4096 characters).
void print_error(std::string_view message);
// As print_error, with the first %s in the format replaced by value.
void print_error(std::string_view format, std::string_view value);

// What the tool says on the standard error, all in one place. A %s stands
// for the value that goes with the message.
namespace message {
// The option parsers: the run stops.
inline constexpr std::string_view imbalanced_alias = "imbalanced alias to true pathfiles, aborting\n";
inline constexpr std::string_view not_offered = "This option is not offered in this build\n";
inline constexpr std::string_view results_file_refused = "prob opening file %s for output, aborting\n";
inline constexpr std::string_view command_clash = "invalid combination of commands\n";
inline constexpr std::string_view no_server =
    "error: need to specify a DNS server to query using the format: -server <ipv4 addr>\n";
// The option parsers: the run goes on without the setting.
inline constexpr std::string_view bad_start_time = "invalid start time, ignoring\n";
inline constexpr std::string_view bad_stop_time = "invalid stop time, ignoring\n";
inline constexpr std::string_view bad_format = "invalid %s, using default format\n";
// The run itself.
inline constexpr std::string_view query_not_built = "prob building dns packet... aborting\n";
inline constexpr std::string_view results_file_failed = "prob opening results file: %s for writing\n";
}  // namespace message

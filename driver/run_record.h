#pragma once
// The fixed texts the tool introduces itself with: the banner, the help text,
// and the run record that heads every report.

#include <string>
#include <string_view>

#include "driver/args.h"

inline constexpr std::string_view tool_name = "vexa";
// The build gives the version, from the one place it is written.
inline constexpr std::string_view tool_version = VEXA_VERSION;

// "vexa ver: 0.48" once the run record has been made.
const std::string& tool_banner();

// Labels of the run record, and the option that asks for a byte order mark.
inline constexpr std::string_view time_label = "run at";
inline constexpr std::string_view zone_label = "UTC";
inline constexpr std::string_view host_label = "host";
inline constexpr std::string_view system_label = "system";
inline constexpr std::string_view command_label = "command";
inline constexpr std::string_view record_clock_format = "hh:mm:ss";
inline constexpr std::string_view bom_flag = "-bom";

// Makes the run record into `record`. Answers a request for help (or a bare
// command line) by writing the help text instead: false then, and the run
// ends there with 0 (an empty list also gives false).
bool build_run_record(const arg_list& args, std::string& record);
// The help text, on the standard error.
void show_usage();

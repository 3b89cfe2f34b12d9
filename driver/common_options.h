#pragma once
// The common command line: every option that is not about DNS, looked up in
// a fixed order that decides all ties.

#include <string_view>

#include "driver/args.h"
#include "driver/cmd_params.h"

// False if the run can't go on (its message, if any, is on the standard error).
bool parse_common_options(cmd_params& params, arg_list& args);
// Sets separator, clash_char and clash_subst from a separator text.
void set_csv_separator(cmd_params& params, std::string_view text);

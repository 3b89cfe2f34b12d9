#pragma once
// The tool's own command line: the query commands, -server and the numbers.

#include "driver/args.h"
#include "driver/input_params.h"

// Runs the common parser first. False if the run can't go on.
bool parse_tool_options(input_params& params, arg_list& args);

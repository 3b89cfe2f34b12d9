#pragma once
// The tool's own command line: the query commands, -server and the numbers.

#include "driver/args.h"
#include "driver/input_params.h"
#include "report/report_settings.h"

// Runs the common parser first. False if the run can't go on.
bool parse_tool_options(input_params& params, arg_list& args);

// What the report's writers read of the options, made once per run.
report_settings make_report_settings(const input_params& params);

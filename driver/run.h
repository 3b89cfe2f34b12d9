#pragma once
// The whole run, from the command line to the exit code.

#include "driver/args.h"

// Result: 0 when the query or list ran, whatever it came to; -1 when the run
// could not get as far as its queries.
int run_tool(arg_list& args);

#pragma once
// List mode: one query for each line of the standard input.

#include "dns/dns_entry.h"
#include "driver/input_params.h"
#include "report/output_stream.h"
#include "report/row_workspace.h"
#include "transport/dns_result.h"

void run_list(uni::output_stream& out, dns_result& result, dns_entry& query, input_params& params,
              row_workspace& work);

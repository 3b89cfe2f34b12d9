#pragma once
// Turns what one attempt came to into report rows: the status word of each
// row, the order of the sections, and the writer of the output form in force.

#include "dns/dns_entry.h"
#include "driver/input_params.h"
#include "report/output_stream.h"
#include "report/row_workspace.h"
#include "transport/dns_result.h"

// Always true; nobody reads it.
bool report_result(uni::output_stream& out, dns_result& result, dns_entry& query, input_params& params,
                   row_workspace& work);

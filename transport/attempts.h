#pragma once
// Sends one built query until a good reply or the tries are used up,
// reporting every try.

#include "dns/dns_entry.h"
#include "driver/input_params.h"
#include "report/output_stream.h"
#include "report/row_workspace.h"
#include "transport/dns_result.h"

// Always true; what the query came to is only in the report.
bool run_attempts(uni::output_stream& out, dns_result& result, dns_entry& query_entry, input_params& params,
                  row_workspace& work);

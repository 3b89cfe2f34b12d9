#pragma once
// Sends one built query until a good reply or the tries are used up,
// reporting every try.

#include "dns/dns_entry.h"
#include "dns/dns_result.h"
#include "driver/input_params.h"
#include "report/output_stream.h"
#include "report/result_dispatch.h"

// What the query came to is only in the report.
void run_attempts(uni::output_stream& out, report_writer& report, dns_result& result, dns_entry& query_entry,
                  const input_params& params);

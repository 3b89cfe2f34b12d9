#pragma once
// List mode: one query for each line of the standard input, or each file of
// the walk of -enumdir.

#include "dns/dns_entry.h"
#include "dns/dns_result.h"
#include "driver/input_params.h"
#include "report/output_stream.h"
#include "report/result_dispatch.h"

void run_list(uni::output_stream& out, report_writer& report, dns_result& result, dns_entry& query,
              const input_params& params);

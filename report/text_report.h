#pragma once
// One row of the padded or compact text report (CSV is a setting of it).

#include <string_view>

#include "dns/dns_entry.h"
#include "driver/input_params.h"
#include "report/output_stream.h"
#include "report/row_workspace.h"

// Writes the header line first while params.show_header is on, then clears it.
// Replaces clash_char in entry.query before writing it.
void write_text_entry(dns_entry& entry, uni::output_stream& out, std::string_view comment,
                      std::string_view status, input_params& params, row_workspace& work);
void write_soa_text(const soa_data& soa, uni::output_stream& out, std::string_view gap);

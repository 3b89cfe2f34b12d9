#pragma once
// The -verbose listing of one try, behind its report rows.

#include "dns/dns_result.h"
#include "report/output_stream.h"

// An empty line and a divider; the packet sent and the packet received,
// each under its label where there is one; a divider and an empty line.
void dump_try(uni::output_stream& out, const dns_result& result);

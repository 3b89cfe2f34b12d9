#include "driver/attempts.h"

#include "platform/os.h"
#include "report/try_dump.h"
#include "transport/exchange.h"

void run_attempts(uni::output_stream& out, report_writer& report, dns_result& result, dns_entry& query_entry,
                  const input_params& params) {
    // Taken as signed, so -retry -1 (all bits set) allows no try at all.
    const auto tries = static_cast<std::int32_t>(params.retries + 1u);
    bool good = false;
    for (std::int32_t count = 0; count < tries && !good; ++count) {
        good = exchange_query(result, query_entry, params.server, params.timeout_secs);
        report.report_result(out, result, query_entry);
        // Also when this try wrote no row: one header per run at most.
        report.end_try();
        if (params.verbose && !params.xml_output) dump_try(out, result);
        // The product wraps like the 32-bit millisecond count it stands for.
        if (!good && params.delay_secs != 0) os::sleep_ms(params.delay_secs * 1000u);
    }
}

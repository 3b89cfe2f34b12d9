#include "driver/list_mode.h"

#include <string>

#include "dns/query_builder.h"
#include "input/stdin_stream.h"
#include "platform/os.h"
#include "transport/attempts.h"

namespace {

// One line: its query, its attempts, and the wait behind it. A line that
// can't be encoded leaves no trace.
void run_line(uni::output_stream& out, dns_result& result, dns_entry& query, input_params& params,
              const std::string& line) {
    params.query_target = line;
    query = dns_entry{};
    if (!build_query(query, params.query_target, params.query_type)) return;
    run_attempts(out, result, query, params);
    if (params.delay_secs != 0) os::sleep_ms(params.delay_secs * 1000u);
}

}  // namespace

void run_list(uni::output_stream& out, dns_result& result, dns_entry& query, input_params& params) {
    uni::stdin_stream input;
    if (!params.pipe_input) return;
    input.is_open = input.is_open && os::stdin_binary_mode();
    if (!input.is_open) return;
    std::string line;
    params.show_header = true;
    while (input.read_line(line, true)) {
        if (line.empty()) continue;
        run_line(out, result, query, params, line);
    }
}

#include "driver/list_mode.h"

#include <string>

#include "dns/query_builder.h"
#include "input/filter.h"
#include "input/stdin_stream.h"
#include "platform/fileio.h"
#include "platform/os.h"
#include "platform/text_convert.h"
#include "transport/attempts.h"

namespace {

// One line: its query, its attempts, and the wait behind it. A line that
// can't be encoded leaves no trace.
void run_line(uni::output_stream& out, dns_result& result, dns_entry& query, input_params& params,
              row_workspace& work, const std::string& line) {
    params.query_target = line;
    query = dns_entry{};
    if (!build_query(query, params.query_target, params.query_type)) return;
    run_attempts(out, result, query, params, work);
    if (params.delay_secs != 0) os::sleep_ms(params.delay_secs * 1000u);
}

// Points the stream at its source: the standard input, else the walk of
// -enumdir. False when there is nothing to read.
bool open_source(kvportdir::stdin_stream_ex& input, const input_params& params) {
    if (params.pipe_input) {
        input.reset();
        input.is_walking = false;
        input.is_open = os::stdin_binary_mode();
        return input.is_open;
    }
    if (params.enum_dir.empty()) return false;
    // A root that is no valid text would become the empty root, which means
    // the top of the file system: walk nothing instead.
    std::u16string root = to_wide(params.enum_dir);
    if (root.empty()) return false;
    return input.start_walk(root, params.enum_depth, params.filters);
}

}  // namespace

void run_list(uni::output_stream& out, dns_result& result, dns_entry& query, input_params& params,
              row_workspace& work) {
    kvportdir::stdin_stream_ex input;
    if (!open_source(input, params)) return;
    std::string line;
    // One header line for the whole list.
    params.show_header = true;
    file_info facts;
    while (input.read_line(line, true)) {
        if (line.empty()) continue;
        // The walk has tested the names already; this second test adds the
        // file times, which are read afresh for every line.
        facts = file_info{};
        if (!params.filters.empty() && !match_filter(params, to_wide(line), params.filters, &facts)) continue;
        run_line(out, result, query, params, work, line);
        line.clear();
    }
}

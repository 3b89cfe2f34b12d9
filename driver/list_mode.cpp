#include "driver/list_mode.h"

#include <string>

#include "dns/query_builder.h"
#include "driver/attempts.h"
#include "input/filter.h"
#include "input/stdin_stream.h"
#include "platform/fileio.h"
#include "platform/os.h"
#include "platform/text_convert.h"

namespace {

// Points the stream at its source: the standard input, else the walk of
// -enumdir. False when there is nothing to read.
bool open_source(kvportdir::stdin_stream_ex& input, const input_params& params) {
    if (params.pipe_input) return input.open_stdin();
    if (params.enum_dir.empty()) return false;
    // A root that is no valid text would become the empty root, which means
    // the top of the file system: walk nothing instead.
    const std::u16string root = to_wide(params.enum_dir);
    if (root.empty()) return false;
    input.start_walk(root, params.enum_depth, params.filter.entries);
    return true;
}

// The walk has tested the names already; this second test adds the file
// times, which are read afresh for every line.
bool passes_filter(const filter_settings& filter, const std::string& line) {
    if (filter.entries.empty()) return true;
    file_info facts;
    return match_filter(filter, to_wide(line), &facts);
}

}  // namespace

void run_list(uni::output_stream& out, report_writer& report, dns_result& result, dns_entry& query,
              const input_params& params) {
    kvportdir::stdin_stream_ex input;
    if (!open_source(input, params)) return;
    std::string line;
    while (input.read_line(line, true)) {
        if (line.empty() || !passes_filter(params.filter, line)) continue;
        // A line that can't be encoded leaves no trace, and no wait.
        if (!build_query(query, line, params.query_type)) continue;
        run_attempts(out, report, result, query, params);
        if (params.delay_secs != 0) os::sleep_ms(params.delay_secs * 1000u);
    }
}

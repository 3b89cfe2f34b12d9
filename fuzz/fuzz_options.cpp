// Fuzz target: a command line, through the tool's option parser (and so the
// common one), then into what a run does next with the settings it found:
// the query it builds and the row that reports it.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "dns/dns_result.h"
#include "dns/query_builder.h"
#include "driver/args.h"
#include "driver/input_params.h"
#include "driver/tool_options.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/null_output.h"
#include "platform/text.h"
#include "report/output_stream.h"
#include "report/result_dispatch.h"

namespace {

// Options that create or open files, or a named system object. Taken out of
// the fuzzed command line so a run leaves nothing behind; their values stay
// in as plain arguments.
constexpr std::string_view side_effect_options[] = {"-out", "-outfile", "-diags", "-signal"};

bool has_side_effects(std::string_view arg) {
    for (std::string_view name : side_effect_options)
        if (same_text(arg, name)) return true;
    return false;
}

}  // namespace

// The input is one argument per piece, the program name first.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    arg_list args;
    for (std::string_view arg : fuzz_input::pieces(data, size))
        if (!has_side_effects(arg)) args.emplace_back(arg);

    input_params params;
    if (!parse_tool_options(params, args)) return 0;

    // The row of a query that could not be sent: its layout is all settings.
    dns_entry query;
    if (!build_query(query, params.query_target, params.query_type)) query.query = params.query_target;
    query.dns_server = params.server;
    query.query_time = 133100000000000000ULL;  // the dates render with the formats given
    dns_result result;
    null_output out;
    const report_settings settings = make_report_settings(params);
    report_writer(settings).report_result(out, result, query);
    return 0;
}

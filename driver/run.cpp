#include "driver/run.h"

#include <optional>
#include <string>

#include "dns/dns_result.h"
#include "dns/query_builder.h"
#include "driver/attempts.h"
#include "driver/input_params.h"
#include "driver/list_mode.h"
#include "driver/messages.h"
#include "driver/run_guard.h"
#include "driver/run_record.h"
#include "driver/tool_options.h"
#include "platform/fileio.h"
#include "platform/os.h"
#include "report/fileio_output.h"
#include "report/output_stream.h"
#include "report/report_settings.h"
#include "report/result_dispatch.h"

namespace {

bool has_work(const input_params& params) {
    return !params.url_value.empty() || !params.ip_value.empty() || !params.mx_value.empty() ||
           !params.txt_value.empty() || !params.ns_value.empty() || params.pipe_input ||
           params.enum_dir_given;
}

void write_frame_head(uni::output_stream& out, const arg_list& args) {
    out.write("<?xml version=\"1.0\" encoding=\"utf-8\"?>");
    out.end_line();
    out.end_line();
    out.write("<logdata tool=\"");
    out.write(tool_banner());
    out.write("\" cmdline=\"");
    out.write(args.front());
    out.write("\">");
    out.end_line();
}

// The queries, once the report's destination is open. -1 when single mode's
// name can't be encoded.
int run_queries(uni::output_stream& out, const input_params& params, const arg_list& args) {
    if (!has_work(params)) {
        show_usage();
        return -1;
    }
    if (params.xml_output) write_frame_head(out, args);
    const report_settings settings = make_report_settings(params);
    report_writer report(settings);
    dns_entry query;
    dns_result result;
    if (params.pipe_input || params.enum_dir_given) {
        run_list(out, report, result, query, params);
    } else {
        if (!build_query(query, params.query_target, params.query_type)) {
            print_error(message::query_not_built);
            return -1;
        }
        run_attempts(out, report, result, query, params);
    }
    if (params.xml_output) {
        out.write("</logdata>");
        out.end_line();
    }
    return 0;
}

// With -append the report goes behind what the file holds, and only a file
// that isn't there is made; else the file is made anew.
bool open_results_file(uni::fileio& results, const input_params& params) {
    if (params.append_output && results.open_results(params.output_file, false)) return true;
    return results.open_results(params.output_file, true);
}

}  // namespace

// Objects go away in reverse order of their making: the results file
// (which writes what its stream holds) before the record and the parameter
// block, and the guard last of all.
int run_tool(arg_list& args) {
    run_guard guard;
    input_params params;
    std::string record;
    // Help, or a command line of the program name alone, ends the run here,
    // through the caller, who restores the console.
    os::start_stage_begin();
    const bool made = build_run_record(args, record);
    os::start_stage_end();
    if (!made) return args.empty() ? -1 : 0;
    uni::console_output console;
    if (!parse_tool_options(params, args)) {
        console.write(record);
        console.end_line();
        return -1;
    }
    guard.arm(params);
    uni::fileio results;
    // Made after the file and so gone before it: its last block reaches the file.
    std::optional<uni::fileio_output> results_out;
    uni::output_stream* out = &console;
    if (!params.output_file.empty()) {
        if (!open_results_file(results, params)) {
            print_error(message::results_file_failed, params.output_file);
            return -1;
        }
        out = &results_out.emplace(results);
    }
    out->write(record);
    out->end_line();
    return run_queries(*out, params, args);
}

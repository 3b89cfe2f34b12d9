#include "driver/run.h"

#include <string>

#include "dns/query_builder.h"
#include "driver/input_params.h"
#include "driver/list_mode.h"
#include "driver/messages.h"
#include "driver/run_record.h"
#include "driver/tool_options.h"
#include "report/output_stream.h"
#include "transport/attempts.h"
#include "transport/dns_result.h"

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
int run_queries(uni::output_stream& out, input_params& params, const arg_list& args) {
    if (!has_work(params)) {
        show_usage();
        return -1;
    }
    if (params.xml_output) write_frame_head(out, args);
    dns_entry query;
    dns_result result;
    if (params.pipe_input || params.enum_dir_given) {
        run_list(out, result, query, params);
    } else {
        if (!build_query(query, params.query_target, params.query_type)) {
            print_error("prob building dns packet... aborting\n");
            return -1;
        }
        params.show_header = true;
        run_attempts(out, result, query, params);
    }
    if (params.xml_output) {
        out.write("</logdata>");
        out.end_line();
    }
    return 0;
}

}  // namespace

int run_tool(arg_list& args) {
    input_params params;
    std::string record;
    build_run_record(args, record);
    if (!parse_tool_options(params, args)) {
        uni::console_output console;
        console.write(record);
        console.end_line();
        return -1;
    }
    uni::console_output console;
    uni::output_stream& out = console;
    out.write(record);
    out.end_line();
    return run_queries(out, params, args);
}

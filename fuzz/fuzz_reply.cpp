// Fuzz target: the bytes are one received reply. It goes through the parser
// and then through everything that reads it afterwards: every row in the
// padded, compact and XML forms, the result dispatch, and the hex dump.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "dns/reply_parser.h"
#include "driver/args.h"
#include "driver/input_params.h"
#include "driver/tool_options.h"
#include "report/hex_dump.h"
#include "report/output_stream.h"
#include "report/result_dispatch.h"
#include "report/text_report.h"
#include "report/xml_report.h"
#include "tests/support/string_output.h"
#include "transport/dns_result.h"

namespace {

constexpr std::size_t largest_reply = 65536;                   // what the receive buffer holds
constexpr std::uint64_t receive_time = 133100000000000000ULL;  // an instant in 2022
const std::string server = "127.0.0.2";

// The three report forms, set up the way the command line sets them.
struct report_forms {
    input_params padded;
    input_params compact;
    input_params xml;
};

void set_up(input_params& params, arg_list args) {
    if (!parse_tool_options(params, args)) std::abort();
}

report_forms& forms() {
    static report_forms* instance = [] {
        auto* made = new report_forms;
        set_up(made->padded, {"vexa", "-server", server});
        set_up(made->compact, {"vexa", "-csv", "-base10", "-dateformat", "mm/dd/yy", "-server", server});
        set_up(made->xml, {"vexa", "-xml", "-server", server});
        return made;
    }();
    return *instance;
}

// Writers rely on the parser keeping every record's data inside its message.
void check_data_bounds(const std::vector<dns_entry>& list) {
    for (const dns_entry& entry : list)
        if (std::uint64_t{entry.data_offset} + entry.data_length > entry.packet.size()) std::abort();
}

void write_rows(std::vector<dns_entry>& list, uni::output_stream& out, report_forms& all,
                row_workspace& work) {
    for (dns_entry& entry : list) {
        write_text_entry(entry, out, "answer", "success", all.padded, work);
        write_text_entry(entry, out, "answer", "success", all.compact, work);
        write_xml_entry(entry, out, all.xml, "success", work);
    }
}

// Every dump row has the same width: offset, hex part and text column, CR LF.
void check_dump(const shared_packet& message) {
    thread_local test_support::string_output dump(4096);
    dump.clear();
    dump_packet(message.bytes(), dump);
    const std::size_t rows = (message.size() + 15) / 16;
    if (dump.text().size() != rows * 64 + message.size()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > largest_reply) return 0;
    report_forms& all = forms();
    all.padded.show_header = all.compact.show_header = true;

    dns_result result;
    result.recv_packet = shared_packet(data, size);
    result.recv_size = static_cast<std::uint32_t>(size);
    result.recv_time = receive_time;
    std::uint16_t id = 0;
    parse_reply(server, receive_time, result.recv_packet, id, result.question_list, result.answer_list,
                result.authority_list, result.additions_list);
    for (const auto* list :
         {&result.question_list, &result.answer_list, &result.authority_list, &result.additions_list})
        check_data_bounds(*list);

    uni::null_out_stream out;
    row_workspace work;
    for (auto* list :
         {&result.question_list, &result.answer_list, &result.authority_list, &result.additions_list})
        write_rows(*list, out, all, work);

    // The dispatcher decides by the query's type too; take the one asked.
    dns_entry query;
    query.query = "www.demo.test";
    query.dns_server = server;
    query.query_time = receive_time;
    query.dns_type = result.question_list.empty() ? 1 : result.question_list.front().dns_type;
    result.sent_size = 1;
    for (input_params* params : {&all.padded, &all.compact, &all.xml})
        report_result(out, result, query, *params, work);

    check_dump(result.recv_packet);
    return 0;
}

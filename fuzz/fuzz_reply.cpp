// Fuzz target: the bytes are one received reply. It goes through the parser
// and then through everything that reads it afterwards: every row in the
// padded, compact and XML forms, the result dispatch, and the hex dump.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "dns/dns_result.h"
#include "dns/reply_parser.h"
#include "driver/args.h"
#include "driver/input_params.h"
#include "driver/tool_options.h"
#include "fuzz/null_output.h"
#include "report/hex_dump.h"
#include "report/output_stream.h"
#include "report/result_dispatch.h"
#include "report/text_report.h"
#include "report/xml_report.h"
#include "tests/support/string_output.h"

namespace {

constexpr std::size_t largest_reply = 65536;                   // what the receive buffer holds
constexpr std::uint64_t receive_time = 133100000000000000ULL;  // an instant in 2022
const std::string server = "127.0.0.2";

report_settings set_up(arg_list args) {
    input_params params;
    if (!parse_tool_options(params, args)) std::abort();
    return make_report_settings(params);
}

// The three report forms, set up the way the command line sets them.
struct report_forms {
    report_settings padded = set_up({"vexa", "-server", server});
    report_settings compact = set_up({"vexa", "-csv", "-base10", "-dateformat", "mm/dd/yy", "-server", server});
    report_settings xml = set_up({"vexa", "-xml", "-server", server});
};

report_forms& forms() {
    static report_forms* instance = new report_forms;
    return *instance;
}

// Writers rely on the parser keeping every record's data inside its message.
void check_data_bounds(const std::vector<dns_entry>& list) {
    for (const dns_entry& entry : list)
        if (std::uint64_t{entry.data_offset} + entry.data_length > entry.packet.size()) std::abort();
}

void write_rows(const std::vector<dns_entry>& list, uni::output_stream& out, const report_forms& all,
                row_workspace& work) {
    text_report padded(all.padded);
    text_report compact(all.compact);
    for (const dns_entry& entry : list) {
        padded.write_row(out, entry, "answer", "success", work);
        compact.write_row(out, entry, "answer", "success", work);
        write_xml_entry(entry, out, all.xml.format_word, "success", work);
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
    const report_forms& all = forms();

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

    null_output out;
    row_workspace work;
    for (const auto* list :
         {&result.question_list, &result.answer_list, &result.authority_list, &result.additions_list})
        write_rows(*list, out, all, work);

    // The dispatcher decides by the query's type too; take the one asked.
    dns_entry query;
    query.query = "www.demo.test";
    query.dns_server = server;
    query.query_time = receive_time;
    query.dns_type = result.question_list.empty() ? 1 : result.question_list.front().dns_type;
    result.sent_size = 1;
    for (const report_settings* settings : {&all.padded, &all.compact, &all.xml})
        report_writer(*settings).report_result(out, result, query);

    check_dump(result.recv_packet);
    return 0;
}

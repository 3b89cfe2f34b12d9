#include "report/result_dispatch.h"

#include <string_view>
#include <vector>

#include "report/text_report.h"
#include "report/xml_report.h"

namespace {

constexpr std::uint16_t type_cname = 5;

// The form is chosen per row, by the XML flag alone; CSV is a text setting.
void write_row(uni::output_stream& out, dns_entry& entry, std::string_view comment, std::string_view status,
               input_params& params, row_workspace& work) {
    if (params.xml_output)
        write_xml_entry(entry, out, params, status, work);
    else
        write_text_entry(entry, out, comment, status, params, work);
}

void write_section(uni::output_stream& out, std::vector<dns_entry>& list, std::size_t count,
                   std::string_view comment, input_params& params, row_workspace& work) {
    for (std::size_t i = 0; i < count; ++i) write_row(out, list[i], comment, "success", params, work);
}

}  // namespace

bool report_result(uni::output_stream& out, dns_result& result, dns_entry& query, input_params& params,
                   row_workspace& work) {
    const std::size_t questions = result.question_list.size();
    const std::size_t answers = result.answer_list.size();
    const std::size_t authorities = result.authority_list.size();
    const std::size_t additions = result.additions_list.size();

    // Attempts that gave no entry at all are told by a row of the built query.
    if (result.sent_size == 0) {
        write_row(out, query, "question", "sock err", params, work);
        return true;
    }
    if (result.recv_size == 0) {
        write_row(out, query, "question", "timeout", params, work);
        return true;
    }
    if (questions == 0 && answers == 0 && authorities == 0 && additions == 0) {
        write_row(out, query, "question", "unkresp", params, work);
        return true;
    }

    // An echoed question without an answer is the only sign of a missing
    // name; a CNAME query often has none, so it isn't flagged there.
    if (answers == 0 && query.dns_type != type_cname) {
        for (std::size_t i = 0; i < questions; ++i)
            write_row(out, result.question_list[i], "question", "invalid", params, work);
    }

    // Whatever was decoded is reported, even after a parse that stopped halfway.
    write_section(out, result.answer_list, answers, "answer", params, work);
    write_section(out, result.authority_list, authorities, "authority", params, work);
    write_section(out, result.additions_list, additions, "additions", params, work);
    return true;
}

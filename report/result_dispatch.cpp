#include "report/result_dispatch.h"

#include <string_view>
#include <utility>
#include <vector>

#include "dns/record_types.h"
#include "report/xml_report.h"

// The form is chosen per row, by the XML flag alone; CSV is a text setting.
void report_writer::write_row(uni::output_stream& out, const dns_entry& entry, std::string_view comment,
                              std::string_view status) {
    if (settings_.xml_output)
        write_xml_entry(entry, out, settings_.format_word, status, work_);
    else
        text_.write_row(out, entry, comment, status, work_);
}

void report_writer::report_result(uni::output_stream& out, const dns_result& result, const dns_entry& query) {
    // Attempts that gave no entry at all are told by a row of the built query.
    if (result.sent_size == 0) {
        write_row(out, query, "question", "sock err");
        return;
    }
    if (result.recv_size == 0) {
        write_row(out, query, "question", "timeout");
        return;
    }
    if (result.question_list.empty() && result.answer_list.empty() && result.authority_list.empty() &&
        result.additions_list.empty()) {
        write_row(out, query, "question", "unkresp");
        return;
    }

    // An echoed question without an answer is the only sign of a missing
    // name; a CNAME query often has none, so it isn't flagged there.
    if (result.answer_list.empty() && query.dns_type != rr_type::cname) {
        for (const dns_entry& entry : result.question_list) write_row(out, entry, "question", "invalid");
    }

    // Whatever was decoded is reported, even after a parse that stopped halfway.
    const std::pair<const std::vector<dns_entry>*, std::string_view> sections[] = {
        {&result.answer_list, "answer"}, {&result.authority_list, "authority"}, {&result.additions_list, "additions"}};
    for (const auto& [list, comment] : sections)
        for (const dns_entry& entry : *list) write_row(out, entry, comment, "success");
}

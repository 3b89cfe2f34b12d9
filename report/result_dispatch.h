#pragma once
// Turns what one attempt came to into report rows: the status word of each
// row, the order of the sections, and the writer of the output form in force.

#include "dns/dns_entry.h"
#include "dns/dns_result.h"
#include "report/output_stream.h"
#include "report/report_settings.h"
#include "report/row_workspace.h"
#include "report/text_report.h"

// One per run: it keeps what the rows share from one to the next.
class report_writer {
public:
    // Keeps `settings`, which must outlive the writer.
    explicit report_writer(const report_settings& settings) : settings_(settings), text_(settings) {}

    // The rows of one try; a try that brought no record is told by a row of the query.
    void report_result(uni::output_stream& out, const dns_result& result, const dns_entry& query);
    // A try is over: the header line, if it hasn't come yet, is not to come.
    void end_try() { text_.header_done(); }

private:
    void write_row(uni::output_stream& out, const dns_entry& entry, std::string_view comment,
                   std::string_view status);

    const report_settings& settings_;
    text_report text_;
    row_workspace work_;
};

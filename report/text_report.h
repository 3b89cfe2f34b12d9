#pragma once
// Rows of the padded or compact text report (CSV is a setting of it).

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "dns/dns_entry.h"
#include "report/output_stream.h"
#include "report/report_settings.h"
#include "report/row_workspace.h"

class text_report {
public:
    static constexpr std::size_t column_count = 13;
    // What the settings make of every line: gaps and cell widths.
    struct line_layout {
        std::string_view separator;
        std::string_view pair_gap;
        std::string_view list_gap;
        std::array<std::size_t, column_count> widths{};  // all 0 in the compact layout
    };

    // Keeps `settings`, which must outlive the writer.
    explicit text_report(const report_settings& settings);

    // One row; the header line goes in front of it while it is still due.
    // The row shows the query text with clash_char put as clash_subst.
    void write_row(uni::output_stream& out, const dns_entry& entry, std::string_view comment,
                   std::string_view status, row_workspace& work);
    // From now on no header line: one per run at most.
    void header_done() { header_due_ = false; }

private:
    const report_settings& settings_;
    line_layout layout_;
    bool header_due_ = true;
    std::string query_;  // the query text of the row, where a clash was put right
};

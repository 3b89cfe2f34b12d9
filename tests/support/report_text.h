#pragma once
// Helpers that read a report as text: past the run record, with the date and
// time cells masked so the rest compares byte for byte, and checks of those
// cells and of the line ends.

#include <ctime>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace test_support {

// Everything behind the first empty line: the run record at the head of a
// report is skipped whatever it holds. The whole text if there is none.
std::string_view report_body(std::string_view out);

// Each letter and digit of the date and time cells of every report row (the
// header line left alone) becomes '#', so "2026-11-19" reads "####-##-##".
// Cells are found by `separator`, which no cell in front of them can hold.
std::string mask_date_time(std::string_view report, std::string_view separator = " | ");

// Every report row has a date cell "yyyy-mm-dd" and a time cell
// "hh:mm:ss.xxx" (behind the pair gap) for a valid UTC instant that lies
// between `earliest` and `latest` (whole seconds since 1970), and there is
// at least one row.
testing::AssertionResult date_time_cells_valid(std::string_view report, std::string_view separator,
                                               std::time_t earliest, std::time_t latest);

// Every line ends in CR LF, with no stray CR or LF elsewhere.
testing::AssertionResult lines_end_in_crlf(std::string_view text);

}  // namespace test_support

#include "support/report_text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <vector>

namespace test_support {

namespace {

// The 13 cells of a report row, the last to the line's end; none for the
// header line or any other line.
std::vector<std::string_view> cells_of(std::string_view line, std::string_view separator) {
    std::vector<std::string_view> cells;
    for (std::size_t at; cells.size() < 12 && (at = line.find(separator)) != std::string_view::npos;
         line.remove_prefix(at + separator.size()))
        cells.push_back(line.substr(0, at));
    cells.push_back(line);
    if (cells.size() < 13 || cells[1].find("comment") != std::string_view::npos) return {};
    return cells;
}

// Calls `each` with the cells of every report row of `text`.
template <typename Each>
void for_each_row(std::string_view text, std::string_view separator, Each each) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (std::vector<std::string_view> cells = cells_of(line, separator); !cells.empty()) each(line, cells);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

// "yyyy-mm-dd hh:mm:ss.xxx" of a real instant, as seconds since 1970.
bool parse_instant(const std::string& text, std::time_t& when) {
    const std::string_view shape = "0000-00-00 00:00:00.000";
    if (text.size() != shape.size()) return false;
    for (std::size_t i = 0; i < shape.size(); ++i)
        if (shape[i] == '0' ? !std::isdigit(static_cast<unsigned char>(text[i])) : text[i] != shape[i])
            return false;
    std::tm f{};
    std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d", &f.tm_year, &f.tm_mon, &f.tm_mday, &f.tm_hour,
                &f.tm_min, &f.tm_sec);
    const int day = f.tm_mday;
    if (f.tm_mon < 1 || f.tm_mon > 12 || f.tm_hour > 23 || f.tm_min > 59 || f.tm_sec > 59) return false;
    f.tm_year -= 1900;
    f.tm_mon -= 1;
    when = ::timegm(&f);
    return f.tm_mday == day;  // timegm rolls 31 April over into May
}

}  // namespace

std::string_view report_body(std::string_view out) {
    for (std::string_view blank : {"\r\n\r\n", "\n\n"})
        if (const std::size_t at = out.find(blank); at != std::string_view::npos)
            return out.substr(at + blank.size());
    return out;
}

std::string mask_date_time(std::string_view report, std::string_view separator) {
    std::string masked(report);
    for_each_row(report, separator, [&](std::string_view, const std::vector<std::string_view>& cells) {
        for (std::string_view cell : {cells[5], cells[6]})
            for (std::size_t i = cell.data() - report.data(), end = i + cell.size(); i < end; ++i)
                if (std::isalnum(static_cast<unsigned char>(masked[i]))) masked[i] = '#';
    });
    return masked;
}

testing::AssertionResult date_time_cells_valid(std::string_view report, std::string_view separator,
                                               std::time_t earliest, std::time_t latest) {
    std::size_t rows = 0;
    std::string faults;
    for_each_row(report, separator, [&](std::string_view line, const std::vector<std::string_view>& cells) {
        ++rows;
        std::string_view time = cells[6];
        if (time.starts_with(' ')) time.remove_prefix(1);  // the pair gap
        std::time_t when = 0;
        const std::string instant = std::string(cells[5]) + " " + std::string(time);
        if (!parse_instant(instant, when) || when < earliest || when > latest)
            faults += "date/time bad or outside the run in: " + std::string(line) + "\n";
    });
    if (rows == 0) return testing::AssertionFailure() << "no report row in:\n" << report;
    if (!faults.empty()) return testing::AssertionFailure() << faults;
    return testing::AssertionSuccess();
}

testing::AssertionResult lines_end_in_crlf(std::string_view text) {
    std::string faults;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (end == std::string_view::npos || line.find('\r') != line.size() - 1)
            faults += "line " + std::to_string(number) + ": " + std::string(line) + "\n";
    }
    if (!faults.empty()) return testing::AssertionFailure() << "lines not ending in CR LF:\n" << faults;
    return testing::AssertionSuccess();
}

}  // namespace test_support

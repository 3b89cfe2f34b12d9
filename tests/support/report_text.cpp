#include "support/report_text.h"

#include <vector>

namespace test_support {

namespace {

constexpr std::size_t date_cell = 5;
constexpr std::size_t time_cell = 6;
constexpr std::size_t row_cells = 13;

struct cell {
    std::size_t start;
    std::size_t length;
};

// Cells of one line, cut at each separator; the last cell runs to the line's end.
std::vector<cell> split_cells(std::string_view line, std::string_view separator) {
    std::vector<cell> cells;
    std::size_t start = 0;
    for (std::size_t at; cells.size() + 1 < row_cells &&
                         (at = line.find(separator, start)) != std::string_view::npos;) {
        cells.push_back({start, at - start});
        start = at + separator.size();
    }
    cells.push_back({start, line.size() - start});
    return cells;
}

std::string_view trim(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

// The cells of a report row; empty for the header line and anything else.
std::vector<cell> row_cells_of(std::string_view line, std::string_view separator) {
    std::vector<cell> cells = split_cells(line, separator);
    if (cells.size() < row_cells) return {};
    if (trim(line.substr(cells[1].start, cells[1].length)) == "comment") return {};
    return cells;
}

bool is_alnum(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Reads `count` digits at `text[at]`; false if any is not a digit.
bool read_digits(std::string_view text, std::size_t at, std::size_t count, int& value) {
    if (at + count > text.size()) return false;
    value = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        if (text[i] < '0' || text[i] > '9') return false;
        value = value * 10 + (text[i] - '0');
    }
    return true;
}

bool parse_instant(std::string_view date, std::string_view time, std::time_t& when) {
    int y, mo, d, h, mi, s, ms;
    if (date.size() != 10 || date[4] != '-' || date[7] != '-') return false;
    if (time.size() != 12 || time[2] != ':' || time[5] != ':' || time[8] != '.') return false;
    if (!read_digits(date, 0, 4, y) || !read_digits(date, 5, 2, mo) || !read_digits(date, 8, 2, d) ||
        !read_digits(time, 0, 2, h) || !read_digits(time, 3, 2, mi) || !read_digits(time, 6, 2, s) ||
        !read_digits(time, 9, 3, ms))
        return false;
    if (mo < 1 || mo > 12 || d < 1 || d > 31 || h > 23 || mi > 59 || s > 59) return false;
    std::tm fields{};
    fields.tm_year = y - 1900;
    fields.tm_mon = mo - 1;
    fields.tm_mday = d;
    fields.tm_hour = h;
    fields.tm_min = mi;
    fields.tm_sec = s;
    when = ::timegm(&fields);
    return fields.tm_mday == d;  // timegm rolls 31 April over into May
}

template <typename Each>
void for_each_line(std::string_view text, Each each) {
    while (!text.empty()) {
        std::size_t end = text.find('\n');
        std::size_t next = end == std::string_view::npos ? text.size() : end + 1;
        each(text.substr(0, next));
        text.remove_prefix(next);
    }
}

// A line without its line end.
std::string_view content_of(std::string_view line) {
    if (!line.empty() && line.back() == '\n') line.remove_suffix(1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
}

}  // namespace

std::string_view report_body(std::string_view out) {
    for (std::string_view blank : {"\r\n\r\n", "\n\n"}) {
        std::size_t at = out.find(blank);
        if (at != std::string_view::npos) return out.substr(at + blank.size());
    }
    return out;
}

std::string mask_date_time(std::string_view report, std::string_view separator) {
    std::string masked(report);
    std::size_t line_start = 0;
    for_each_line(report, [&](std::string_view line) {
        std::vector<cell> cells = row_cells_of(content_of(line), separator);
        if (!cells.empty()) {
            for (std::size_t index : {date_cell, time_cell}) {
                for (std::size_t i = 0; i < cells[index].length; ++i) {
                    char& c = masked[line_start + cells[index].start + i];
                    if (is_alnum(c)) c = '#';
                }
            }
        }
        line_start += line.size();
    });
    return masked;
}

testing::AssertionResult date_time_cells_valid(std::string_view report, std::string_view separator,
                                               std::time_t earliest, std::time_t latest) {
    std::size_t rows = 0;
    std::string faults;
    for_each_line(report, [&](std::string_view line) {
        line = content_of(line);
        std::vector<cell> cells = row_cells_of(line, separator);
        if (cells.empty()) return;
        ++rows;
        std::string_view date = line.substr(cells[date_cell].start, cells[date_cell].length);
        std::string_view time = line.substr(cells[time_cell].start, cells[time_cell].length);
        if (!time.empty() && time.front() == ' ') time.remove_prefix(1);  // the pair gap
        std::time_t when = 0;
        if (!parse_instant(date, time, when))
            faults += "bad date/time cells in: " + std::string(line) + "\n";
        else if (when < earliest || when > latest)
            faults += "date/time outside the run in: " + std::string(line) + "\n";
    });
    if (rows == 0) return testing::AssertionFailure() << "no report row in:\n" << report;
    if (!faults.empty()) return testing::AssertionFailure() << faults;
    return testing::AssertionSuccess();
}

testing::AssertionResult lines_end_in_crlf(std::string_view text) {
    std::size_t number = 0;
    std::string faults;
    for_each_line(text, [&](std::string_view line) {
        ++number;
        bool crlf = line.size() >= 2 && line.substr(line.size() - 2) == "\r\n";
        std::string_view inner = crlf ? line.substr(0, line.size() - 2) : line;
        if (!crlf || inner.find('\r') != std::string_view::npos)
            faults += "line " + std::to_string(number) + ": " + std::string(inner) + "\n";
    });
    if (!faults.empty()) return testing::AssertionFailure() << "lines not ending in CR LF:\n" << faults;
    return testing::AssertionSuccess();
}

}  // namespace test_support

// Reading a report's lines and cells: shared by unit and end-to-end tests.
#include <algorithm>

#include "support/e2e.h"

namespace test_support {

std::vector<std::string> lines_of(std::string_view body) {
    std::vector<std::string> lines;
    while (!body.empty()) {
        const std::size_t end = std::min(body.find("\r\n"), body.size());
        lines.emplace_back(body.substr(0, end));
        body.remove_prefix(std::min(body.size(), end + 2));
    }
    return lines;
}

std::vector<std::string_view> cells_of(std::string_view line, std::string_view separator) {
    std::vector<std::string_view> cells;
    for (std::size_t at; cells.size() < 12 && (at = line.find(separator)) != std::string_view::npos;
         line.remove_prefix(at + separator.size()))
        cells.push_back(line.substr(0, at));
    cells.push_back(line);
    if (cells.size() < 13 || cells[1].find("comment") != std::string_view::npos) return {};
    return cells;
}

}  // namespace test_support

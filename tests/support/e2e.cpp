#include "support/e2e.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace test_support {

datagram with_id(const datagram& query, const datagram& rest) {
    datagram reply(2 + rest.size(), 0);
    std::copy_n(query.begin(), std::min<std::size_t>(query.size(), 2), reply.begin());
    std::copy(rest.begin(), rest.end(), reply.begin() + 2);
    return reply;
}

reply_handler answer(datagram rest) {
    return [rest = std::move(rest)](const datagram& q) { return std::vector<datagram>{with_id(q, rest)}; };
}

std::string read_file(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::uint16_t id_of(const datagram& query) {
    return query.size() < 2 ? 0 : static_cast<std::uint16_t>(query[0] | (query[1] << 8));
}

e2e_run run_against(const responder& server, std::vector<std::string> args, std::string_view input) {
    EXPECT_TRUE(server.ready()) << server.error();
    const bool csv = std::find(args.begin(), args.end(), "-csv") != args.end();
    args.insert(args.end(), {"-server", server.address()});
    e2e_run result{run_vexa(args, input), {}, {}};
    EXPECT_FALSE(result.run.timed_out);
    EXPECT_EQ(result.run.signal, 0) << result.run.err;
    EXPECT_TRUE(lines_end_in_crlf(result.run.out));
    result.queries = server.queries();
    result.body = mask_date_time(report_body(result.run.out), csv ? "," : " | ");
    return result;
}

std::string seen(const responder& server) {
    std::string text;
    for (const datagram& q : server.queries()) {
        std::string name;
        std::size_t at = 12;
        for (; at < q.size() && q[at] != 0; at += 1 + q[at])
            name.append(name.empty() ? "" : ".")
                .append(q.begin() + at + 1, q.begin() + std::min<std::size_t>(q.size(), at + 1 + q[at]));
        const unsigned type = at + 2 < q.size() ? (q[at + 1] << 8 | q[at + 2]) : 0;
        text += (text.empty() ? "" : " ") + name + "/" + std::to_string(type);
    }
    return text;
}

std::string expand(std::string_view text, std::uint16_t id, std::string_view server) {
    char id4[8], id1[8], xx[4];
    std::snprintf(id4, sizeof id4, "%04x", id);
    std::snprintf(id1, sizeof id1, "%x", id);
    std::snprintf(xx, sizeof xx, "%02x", id & 0xFF);
    std::string header = "DNSserv";
    header.resize(std::max(header.size(), server.size()), ' ');
    const char shown = (id & 0xFF) >= 32 && (id & 0xFF) <= 126 ? static_cast<char>(id & 0xFF) : '.';
    const std::pair<std::string_view, std::string> fills[] = {{"\n", "\r\n"},
                                                              {"{id4}", id4},
                                                              {"{id}", id1},
                                                              {"{xx}", xx},
                                                              {"{c}", std::string(1, shown)},
                                                              {"{srvhdr}", header},
                                                              {"{srv}", std::string(server)}};
    std::string out(text);
    for (const auto& [from, to] : fills)
        for (std::size_t at = 0; (at = out.find(from, at)) != std::string::npos; at += to.size())
            out.replace(at, from.size(), to);
    return out;
}

namespace {

template <typename Each>
void for_each_row(std::string_view text, std::string_view separator, Each each) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (const auto cells = cells_of(line, separator); !cells.empty()) each(line, cells);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

// Seconds since 1970 of "yyyy-mm-dd hh:mm:ss.xxx"; -1 when it is no real instant.
std::time_t instant_of(const std::string& text) {
    std::tm fields{};
    const char* rest = ::strptime(text.c_str(), "%Y-%m-%d %H:%M:%S.", &fields);
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    if (!rest || std::string_view(rest).size() != 3 || !std::all_of(rest, rest + 3, digit)) return -1;
    const std::time_t when = ::timegm(&fields);
    char again[32];  // printed back, so a 31 April or a missing zero fails
    std::strftime(again, sizeof again, "%Y-%m-%d %H:%M:%S.", std::gmtime(&when));
    return text.starts_with(again) ? when : -1;
}

}  // namespace

std::string_view report_body(std::string_view out) {
    for (std::string_view blank : {"\r\n\r\n", "\n\n"})
        if (const std::size_t at = out.find(blank); at != std::string_view::npos) return out.substr(at + blank.size());
    return out;
}

std::string mask_date_time(std::string_view report, std::string_view separator) {
    std::string masked(report);
    for_each_row(report, separator, [&](std::string_view, const std::vector<std::string_view>& cells) {
        const std::size_t end = cells[6].data() + cells[6].size() - report.data();
        for (std::size_t i = cells[5].data() - report.data(); i < end; ++i)
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
        const std::string_view time = cells[6].substr(cells[6].starts_with(' '));  // the pair gap
        const std::time_t when = instant_of(std::string(cells[5]) + " " + std::string(time));
        // The clock of time() is coarse and may trail the tool's by a tick.
        if (when < earliest - 1 || when > latest + 1) faults += "date/time bad in: " + std::string(line) + "\n";
    });
    if (rows == 0) return testing::AssertionFailure() << "no report row in:\n" << report;
    if (!faults.empty()) return testing::AssertionFailure() << faults;
    return testing::AssertionSuccess();
}

testing::AssertionResult lines_end_in_crlf(std::string_view text) {
    std::size_t cr = 0, lf = 0, crlf = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        cr += text[i] == '\r', lf += text[i] == '\n', crlf += text.substr(i, 2) == "\r\n";
    if (cr == crlf && lf == crlf && (text.empty() || text.ends_with('\n'))) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "lines not all ending in CR LF:\n" << text;
}

}  // namespace test_support

#include "support/e2e.h"

#include <algorithm>
#include <cstdio>

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

std::vector<std::string> lines_of(std::string_view body) {
    std::vector<std::string> lines;
    while (!body.empty()) {
        const std::size_t end = std::min(body.find("\r\n"), body.size());
        lines.emplace_back(body.substr(0, end));
        body.remove_prefix(std::min(body.size(), end + 2));
    }
    return lines;
}

std::string expand(std::string_view text, std::uint16_t id, std::string_view server) {
    const unsigned low = id & 0xFF;
    char id4[8], id1[8], xx[4];
    std::snprintf(id4, sizeof id4, "%04x", id);
    std::snprintf(id1, sizeof id1, "%x", id);
    std::snprintf(xx, sizeof xx, "%02x", low);
    std::string header = "DNSserv";
    header.resize(std::max(header.size(), server.size()), ' ');
    const std::pair<std::string_view, std::string> fills[] = {
        {"\n", "\r\n"}, {"{id4}", id4}, {"{id}", id1}, {"{xx}", xx},
        {"{c}", std::string(1, low >= 32 && low <= 126 ? static_cast<char>(low) : '.')},
        {"{srvhdr}", header}, {"{srv}", std::string(server)}};
    std::string out(text);
    for (const auto& [from, to] : fills)
        for (std::size_t at = 0; (at = out.find(from, at)) != std::string::npos; at += to.size())
            out.replace(at, from.size(), to);
    return out;
}

}  // namespace test_support

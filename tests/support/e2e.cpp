#include "support/e2e.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace test_support {

namespace {

void replace_all(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
}

std::string hex(unsigned value, int width) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    do {
        text.insert(text.begin(), digits[value % 16]);
        value /= 16;
    } while (value != 0);
    if (static_cast<int>(text.size()) < width) text.insert(0, width - text.size(), '0');
    return text;
}

}  // namespace

datagram join(std::initializer_list<datagram> groups) {
    datagram bytes;
    for (const datagram& group : groups) bytes.insert(bytes.end(), group.begin(), group.end());
    return bytes;
}

datagram with_id(const datagram& query, const datagram& rest) {
    datagram reply{query.size() > 0 ? query[0] : std::uint8_t{0},
                   query.size() > 1 ? query[1] : std::uint8_t{0}};
    reply.insert(reply.end(), rest.begin(), rest.end());
    return reply;
}

reply_handler answer(datagram rest) {
    return [rest = std::move(rest)](const datagram& query) {
        return std::vector<datagram>{with_id(query, rest)};
    };
}

std::uint16_t id_of(const datagram& query) {
    if (query.size() < 2) return 0;
    return static_cast<std::uint16_t>(query[0] | (query[1] << 8));
}

e2e_run run_against(const responder& server, std::vector<std::string> args,
                    std::string_view input) {
    EXPECT_TRUE(server.ready()) << server.error();
    const bool csv = std::find(args.begin(), args.end(), "-csv") != args.end();
    args.push_back("-server");
    args.push_back(server.address());
    e2e_run result;
    result.run = run_vexa(args, input);
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
        std::size_t end = body.find("\r\n");
        if (end == std::string_view::npos) end = body.size();
        lines.emplace_back(body.substr(0, end));
        body.remove_prefix(std::min(body.size(), end + 2));
    }
    return lines;
}

std::string expand(std::string_view text, std::uint16_t id, std::string_view server) {
    std::string out;
    for (std::size_t start = 0; start <= text.size();) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        out.append(text.substr(start, end - start));
        if (end < text.size()) out.append("\r\n");
        start = end + 1;
    }
    const unsigned low = id & 0xFF;
    std::string header = "DNSserv";
    if (header.size() < server.size()) header.append(server.size() - header.size(), ' ');
    replace_all(out, "{id4}", hex(id, 4));
    replace_all(out, "{id}", hex(id, 1));
    replace_all(out, "{xx}", hex(low, 2));
    replace_all(out, "{c}", std::string(1, low >= 32 && low <= 126 ? static_cast<char>(low) : '.'));
    replace_all(out, "{srvhdr}", header);
    replace_all(out, "{srv}", server);
    return out;
}

}  // namespace test_support

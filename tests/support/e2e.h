#pragma once
// What the end-to-end tests share: building scripted replies, one run of vexa
// against a responder, and expected reports with placeholders.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/fixtures.h"
#include "support/report_text.h"
#include "support/responder.h"
#include "support/run_tool.h"

namespace test_support {

// (join, which builds a datagram from byte groups, is in fixtures.h.)

// The query's two ID bytes in front of `rest` (which starts at the flags).
datagram with_id(const datagram& query, const datagram& rest);

// Answers every query with `rest` behind the query's own ID.
reply_handler answer(datagram rest);

// The ID of a query as the report shows it: first byte low, second high.
std::uint16_t id_of(const datagram& query);

// One run of vexa with `-server <the responder's address>` added.
struct e2e_run {
    vexa_run run;
    std::vector<datagram> queries;  // what the server saw
    std::string body;               // report after the run record, date/time masked
};
e2e_run run_against(const responder& server, std::vector<std::string> args,
                    std::string_view input = {});

// The rows (lines) of a report body, without their CR LF.
std::vector<std::string> lines_of(std::string_view body);

// Fills the placeholders of an expected report:
//   {id4} {id}   the ID, zero-filled to 4 hex digits / unpadded
//   {xx} {c}     the ID's first byte as a hex-dump byte and as dump text
//   {srv}        the server address; {srvhdr} "DNSserv" padded to its width
// Lines of `text` are joined with CR LF, as the report has them.
std::string expand(std::string_view text, std::uint16_t id, std::string_view server);

}  // namespace test_support

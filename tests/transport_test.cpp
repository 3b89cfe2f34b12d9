// The exchange and the attempt loop in process, against the scripted server.
#include <gtest/gtest.h>

#include "dns/query_builder.h"
#include "driver/input_params.h"
#include "support/e2e.h"
#include "transport/attempts.h"
#include "transport/exchange.h"

namespace {

using namespace test_support;

const datagram question_a_b = {1, 'a', 1, 'b', 0, 0, 1, 0, 1};  // a.b. A IN
const datagram one_answer = join({{0x81, 0x80, 0, 1, 0, 1, 0, 0, 0, 0}, question_a_b,  // QR RD RA; QD 1, AN 1
                                  {0xC0, 12, 0, 1, 0, 1, 0, 0, 0, 60, 0, 4, 1, 2, 3, 4}});

dns_entry built_query(std::string_view name, std::uint32_t type) {
    dns_entry query;
    EXPECT_TRUE(build_query(query, name, type));
    return query;
}

TEST(Exchange, EveryEntrySharesTheOneReceivedPacket) {
    responder server(answer(one_answer));
    dns_entry query = built_query("a.b", 1);
    dns_result result;
    ASSERT_TRUE(exchange_query(result, query, server.address(), 1)) << server.error();
    EXPECT_EQ(result.sent_packet.data(), query.packet.data());  // shared, not copied
    EXPECT_EQ(datagram(result.recv_packet.data(), result.recv_packet.data() + result.recv_size),
              with_id(server.queries().at(0), one_answer));
    EXPECT_TRUE(query.query_time != 0 && query.query_time <= result.recv_time);
    ASSERT_EQ(result.question_list.size() + result.answer_list.size(), 2u);
    for (const dns_entry* e : {&result.question_list[0], &result.answer_list[0]}) {
        EXPECT_EQ(e->packet.data(), result.recv_packet.data());
        EXPECT_TRUE(e->query_time == result.recv_time && e->packet_id == query.packet_id);
        EXPECT_EQ(e->dns_server, server.address());
    }
}

// The statuses of silence, foreign IDs and the rest are the end-to-end tests'; these are the edges.
TEST(Exchange, EdgesOfOneAttempt) {
    responder server(answer({0x81, 0x80, 0}));  // QR and the ID: good, though nothing decodes
    dns_entry query = built_query("a.b", 1), empty;
    dns_result result;
    EXPECT_TRUE(exchange_query(result, query, server.address(), 1));
    EXPECT_TRUE(result.recv_size == 5 && result.recv_packet.size() == 5 && result.question_list.empty());
    EXPECT_FALSE(exchange_query(result, query, "bogus", 0));  // a server text that is no address
    EXPECT_TRUE(result.sent_size == 0 && !result.sent_packet.empty()) << "kept even when not sent";
    EXPECT_FALSE(exchange_query(result, empty, server.address(), 0));  // no query, no traffic
    EXPECT_TRUE(result.sent_size == 0 && server.queries().size() == 1);
}

TEST(Attempts, HeaderIsSpentEvenByATryWithoutRows) {
    // A CNAME query answered with the question alone gives no row at all.
    responder server(answer(join({{0x81, 0x80, 0, 1, 0, 0, 0, 0, 0, 0}, question_a_b})));
    input_params params;
    params.server = server.address();
    params.show_header = true;
    dns_entry query = built_query("a.b", 5);
    dns_result result;
    string_output out;
    EXPECT_TRUE(run_attempts(out, result, query, params));
    EXPECT_EQ(out.text(), "");
    EXPECT_FALSE(params.show_header);
    EXPECT_EQ(server.queries().size(), 1u);
}

}  // namespace

// One exchange in process; the tries and the statuses of each kind of reply are the end-to-end tests'.
#include "transport/exchange.h"
#include "dns/query_builder.h"
#include "support/e2e.h"

namespace {

using namespace test_support;

TEST(Exchange, EveryEntrySharesTheOneReceivedPacket) {
    const datagram reply = join({{0x81, 0x80, 0, 1, 0, 1, 0, 0, 0, 0},
                                 {1, 'a', 1, 'b', 0, 0, 1, 0, 1},                          // a.b. A IN
                                 {0xC0, 12, 0, 1, 0, 1, 0, 0, 0, 60, 0, 4, 1, 2, 3, 4}});  // 1.2.3.4
    responder server(answer(reply));
    dns_entry query, empty;
    ASSERT_TRUE(build_query(query, "a.b", 1));
    dns_result result;
    ASSERT_TRUE(exchange_query(result, query, server.address(), 1)) << server.error();
    EXPECT_EQ(result.sent_packet.data(), query.packet.data());  // shared, not copied
    EXPECT_EQ(result.recv_size, reply.size() + 2);
    EXPECT_NE(query.query_time, 0u);
    EXPECT_LE(query.query_time, result.recv_time);
    ASSERT_EQ(result.answer_list.size(), 1u);
    const dns_entry& e = result.answer_list[0];  // what each entry of the reply shares is reply_parser_test's
    EXPECT_EQ(e.packet.data(), result.recv_packet.data());
    EXPECT_EQ(e.query_time, result.recv_time);
    EXPECT_EQ(e.dns_server, server.address());
    EXPECT_FALSE(exchange_query(result, empty, server.address(), 0));  // no query, no traffic
    EXPECT_EQ(result.sent_size, 0u);
    EXPECT_EQ(server.queries().size(), 1u);
}

}  // namespace

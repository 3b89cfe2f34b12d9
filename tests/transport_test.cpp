// The exchange and the attempt loop in process, against the scripted server.
#include <gtest/gtest.h>

#include <string>

#include "dns/query_builder.h"
#include "driver/input_params.h"
#include "support/e2e.h"
#include "transport/attempts.h"
#include "transport/exchange.h"

namespace {

using namespace test_support;

const datagram question_a_b = {1, 'a', 1, 'b', 0, 0, 1, 0, 1};  // a.b. A IN

const datagram one_answer = join({
    {0x81, 0x80}, {0, 1, 0, 1, 0, 0, 0, 0},          // QR RD RA; QD 1, AN 1
    question_a_b,
    {0xC0, 12}, {0, 1, 0, 1}, {0, 0, 0, 60}, {0, 4}, {1, 2, 3, 4},
});

// Collects what the report writes.
class captured_output final : public uni::output_stream {
public:
    captured_output() : output_stream(4096) {}
    std::string text;

protected:
    bool write_bytes(const char* bytes, std::size_t count) override {
        text.append(bytes, count);
        return true;
    }
};

dns_entry built_query(std::string_view name, std::uint32_t type) {
    dns_entry query;
    EXPECT_TRUE(build_query(query, name, type));
    return query;
}

TEST(Exchange, EveryEntrySharesTheOneReceivedPacket) {
    responder server(answer(one_answer));
    ASSERT_TRUE(server.ready()) << server.error();
    dns_entry query = built_query("a.b", 1);
    dns_result result;
    ASSERT_TRUE(exchange_query(result, query, server.address(), 1));

    EXPECT_EQ(result.sent_packet.data(), query.packet.data());  // shared, not copied
    EXPECT_EQ(result.sent_size, query.packet.size());
    ASSERT_EQ(result.recv_size, one_answer.size() + 2);
    EXPECT_EQ(datagram(result.recv_packet.data(), result.recv_packet.data() + result.recv_size),
              with_id(server.queries().at(0), one_answer));
    EXPECT_EQ(query.dns_server, server.address());
    EXPECT_NE(query.query_time, 0u);
    EXPECT_LE(query.query_time, result.recv_time);
    ASSERT_EQ(result.question_list.size(), 1u);
    ASSERT_EQ(result.answer_list.size(), 1u);
    for (const dns_entry* entry : {&result.question_list[0], &result.answer_list[0]}) {
        EXPECT_EQ(entry->packet.data(), result.recv_packet.data());
        EXPECT_EQ(entry->query_time, result.recv_time);
        EXPECT_EQ(entry->packet_id, query.packet_id);
        EXPECT_EQ(entry->dns_server, server.address());
    }
}

TEST(Exchange, OutcomesOfOneAttempt) {
    struct outcome_case {
        const char* what;
        reply_handler handler;
        std::string server;  // empty: the responder's
        bool good;
        bool sent;
        std::uint32_t recv_size;
        std::size_t entries;  // all four lists together
    };
    const std::uint32_t full = static_cast<std::uint32_t>(one_answer.size() + 2);
    const outcome_case cases[] = {
        {"a good reply", answer(one_answer), "", true, true, full, 2},
        {"silence", silent(), "", false, true, 0, 0},
        {"a foreign ID keeps what was decoded",
         [](const datagram& q) {
             datagram reply = with_id(q, one_answer);
             reply[0] ^= 0x80;
             return std::vector<datagram>{reply};
         },
         "", false, true, full, 2},
        {"QR clear", answer(join({{0x01, 0x80}, datagram(one_answer.begin() + 2, one_answer.end())})),
         "", false, true, full, 0},
        {"5 bytes with QR and the ID are good", answer({0x81, 0x80, 0}), "", true, true, 5, 0},
        {"a server text that is no address", silent(), "bogus", false, false, 0, 0},
    };
    for (const outcome_case& c : cases) {
        responder server(c.handler, test_loopback_address(c.what));
        ASSERT_TRUE(server.ready()) << server.error();
        dns_entry query = built_query("a.b", 1);
        dns_result result;
        const bool good = exchange_query(result, query, c.server.empty() ? server.address() : c.server,
                                         c.recv_size == 0 ? 0 : 1);
        EXPECT_EQ(good, c.good) << c.what;
        EXPECT_EQ(result.sent_size, c.sent ? query.packet.size() : 0u) << c.what;
        EXPECT_FALSE(result.sent_packet.empty()) << c.what << ": kept even when not sent";
        EXPECT_EQ(result.recv_size, c.recv_size) << c.what;
        EXPECT_EQ(result.recv_packet.size(), c.recv_size) << c.what;
        EXPECT_EQ(result.question_list.size() + result.answer_list.size() +
                      result.authority_list.size() + result.additions_list.size(),
                  c.entries)
            << c.what;
    }
}

TEST(Exchange, NoQueryNoTraffic) {
    responder server(answer(one_answer));
    dns_entry empty;
    dns_result result;
    EXPECT_FALSE(exchange_query(result, empty, server.address(), 0));
    EXPECT_EQ(result.sent_size, 0u);
    EXPECT_TRUE(server.queries().empty());
}

TEST(Exchange, ClearResultEmptiesButKeepsCapacity) {
    dns_result result;
    result.answer_list.resize(5);
    result.sent_size = 3;
    result.recv_size = 4;
    result.recv_time = 5;
    result.recv_packet = shared_packet(byte_list{1, 2});
    const std::size_t capacity = result.answer_list.capacity();
    clear_result(result);
    EXPECT_TRUE(result.answer_list.empty());
    EXPECT_EQ(result.answer_list.capacity(), capacity);
    EXPECT_EQ(result.sent_size + result.recv_size + result.recv_time, 0u);
    EXPECT_TRUE(result.recv_packet.empty());
}

TEST(Attempts, HeaderIsSpentEvenByATryWithoutRows) {
    // A CNAME query answered with the question alone gives no row at all.
    responder server(answer(join({{0x81, 0x80}, {0, 1, 0, 0, 0, 0, 0, 0}, question_a_b})));
    input_params params;
    params.server = server.address();
    params.show_header = true;
    dns_entry query = built_query("a.b", 5);
    dns_result result;
    captured_output out;
    EXPECT_TRUE(run_attempts(out, result, query, params));
    out.flush_buffer();
    EXPECT_EQ(out.text, "");
    EXPECT_FALSE(params.show_header);
    EXPECT_EQ(server.queries().size(), 1u);
}

}  // namespace

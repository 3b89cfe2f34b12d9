#include "dns/dns_result.h"

void clear_result(dns_result& result) {
    result.sent_packet.clear();
    result.sent_size = 0;
    result.recv_packet.clear();
    result.recv_size = 0;
    result.recv_time = 0;
    // clear() keeps each list's capacity, so later attempts reuse it.
    result.question_list.clear();
    result.answer_list.clear();
    result.authority_list.clear();
    result.additions_list.clear();
}

#pragma once
// What one attempt came to: the packets and the four section lists.

#include <cstdint>
#include <vector>

#include "dns/bytes.h"
#include "dns/dns_entry.h"

struct dns_result {
    shared_packet sent_packet;
    std::uint32_t sent_size = 0;  // 0 when nothing went out
    shared_packet recv_packet;
    std::uint32_t recv_size = 0;  // 0 when nothing came
    std::uint64_t recv_time = 0;
    std::vector<dns_entry> question_list;
    std::vector<dns_entry> answer_list;
    std::vector<dns_entry> authority_list;
    std::vector<dns_entry> additions_list;
};

// Sizes and time to 0, packets and lists empty (the lists keep their capacity).
void clear_result(dns_result& result);

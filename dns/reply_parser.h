#pragma once
// The framing of a reply: walks its four sections into lists of entries.
// What each record's data means is worked out when it is written.

#include <cstdint>
#include <string_view>
#include <vector>

#include "dns/bytes.h"
#include "dns/dns_entry.h"

// Result: the offset reached (at least 12 for a reply decoded to its end),
// 0 for a fault. Entries stored before a fault stay in the lists. Every
// entry shares `message`. Bytes behind the message's end read as 0.
std::uint32_t parse_reply(std::string_view server_text, std::uint64_t time_stamp,
                          const shared_packet& message, std::uint16_t& id_out,
                          std::vector<dns_entry>& question_list, std::vector<dns_entry>& answer_list,
                          std::vector<dns_entry>& authority_list, std::vector<dns_entry>& additions_list);

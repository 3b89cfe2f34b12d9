#include "dns/reply_parser.h"

#include "dns/message_header.h"
#include "dns/name_decoder.h"

namespace {

enum class section { question, answer, authority, additional };

// What every entry of one reply has in common.
struct reply_context {
    const shared_packet& message;
    std::string_view server_text;
    std::uint64_t time_stamp;
    std::uint16_t id;
};

// Walks `count` records from the cursor into `list`. False on a fault,
// which ends the whole reply; running out of message is no fault.
bool read_section(const reply_context& reply, section kind, std::uint16_t count, wire_reader& wire,
                  std::vector<dns_entry>& list) {
    for (std::uint16_t n = 0; n < count && wire.pos() < wire.length(); ++n) {
        // Decoded in its place in the list; taken out again if it fails.
        dns_entry& entry = list.emplace_back();
        if (read_name(wire, entry.query) == 0) {
            list.pop_back();
            return false;
        }
        // A record cut off in its fixed fields reads zeros for what is
        // missing: in the question that ends the walk, elsewhere the RDATA
        // bound below catches it.
        entry.dns_type = wire.u16();
        entry.dns_class = wire.u16();
        if (kind != section::question) {
            entry.ttl_secs = wire.u32();
            entry.data_length = wire.u16();
            entry.data_offset = static_cast<std::uint32_t>(wire.pos());
            wire.skip(entry.data_length);
            if (wire.overrun()) {
                list.pop_back();
                return false;
            }
            entry.has_raw_data = kind == section::answer;
        }
        entry.dns_server = reply.server_text;
        entry.query_time = reply.time_stamp;
        entry.packet_id = reply.id;
        entry.packet = reply.message;
    }
    return true;
}

}  // namespace

std::uint32_t parse_reply(std::string_view server_text, std::uint64_t time_stamp,
                          const shared_packet& message, std::uint16_t& id_out,
                          std::vector<dns_entry>& question_list, std::vector<dns_entry>& answer_list,
                          std::vector<dns_entry>& authority_list, std::vector<dns_entry>& additions_list) {
    question_list.clear();
    answer_list.clear();
    authority_list.clear();
    additions_list.clear();

    wire_reader wire(message.bytes());
    const std::uint16_t id = read_packet_id(wire);
    // QR is the only flag anyone looks at: RCODE, TC and the rest are reported as they come.
    if ((wire.u8() & 0x80) == 0) return 0;
    id_out = id;
    wire.skip(1);
    const std::uint16_t counts[] = {wire.u16(), wire.u16(), wire.u16(), wire.u16()};

    // The counts are trusted only as far as the message reaches; a message
    // shorter than its header holds no record.
    wire.seek(header_size);
    const reply_context reply{message, server_text, time_stamp, id};
    if (!read_section(reply, section::question, counts[0], wire, question_list) ||
        !read_section(reply, section::answer, counts[1], wire, answer_list) ||
        !read_section(reply, section::authority, counts[2], wire, authority_list) ||
        !read_section(reply, section::additional, counts[3], wire, additions_list)) {
        return 0;
    }
    return static_cast<std::uint32_t>(wire.pos());
}

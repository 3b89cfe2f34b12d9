#include "dns/reply_parser.h"

#include "dns/name_decoder.h"
#include "dns/wire_reader.h"

namespace {

constexpr std::uint32_t header_size = 12;

enum class section { question, answer, authority, additional };

// What every entry of one reply has in common.
struct reply_context {
    const shared_packet& message;
    const wire_reader& wire;
    const std::string& server_text;
    std::uint64_t time_stamp;
    std::uint16_t id;
};

// Walks `count` records from `offset` into `list`. False on a fault, which
// ends the whole reply; running out of message is no fault.
bool read_section(const reply_context& reply, section kind, std::uint16_t count,
                  std::uint32_t& offset, std::vector<dns_entry>& list) {
    const std::size_t length = reply.wire.length();
    for (std::uint16_t n = 0; n < count && offset < length; ++n) {
        // Decoded in its place in the list; taken out again if it fails.
        dns_entry& entry = list.emplace_back();
        const std::uint32_t name_size =
            read_name(reply.wire.data(), static_cast<std::int32_t>(length), offset, entry.query);
        if (name_size == 0) {
            list.pop_back();
            return false;
        }
        offset += name_size;
        // A record cut off in its fixed fields reads zeros for what is missing;
        // the RDATA bound below then catches it outside the question section.
        entry.dns_type = reply.wire.u16_at(offset);
        entry.dns_class = reply.wire.u16_at(offset + 2);
        offset += 4;
        if (kind != section::question) {
            entry.ttl_secs = reply.wire.u32_at(offset);
            entry.data_length = reply.wire.u16_at(offset + 4);
            offset += 6;
            entry.data_offset = offset;
            if (std::size_t{entry.data_offset} + entry.data_length > length) {
                list.pop_back();
                return false;
            }
            entry.has_raw_data = kind == section::answer;
            offset += entry.data_length;
        }
        entry.dns_server = reply.server_text;
        entry.query_time = reply.time_stamp;
        entry.packet_id = reply.id;
        entry.packet = reply.message;
    }
    return true;
}

}  // namespace

std::uint32_t parse_reply(const std::string& server_text, std::uint64_t time_stamp,
                          const shared_packet& message, std::uint16_t& id_out,
                          std::vector<dns_entry>& question_list,
                          std::vector<dns_entry>& answer_list,
                          std::vector<dns_entry>& authority_list,
                          std::vector<dns_entry>& additions_list) {
    question_list.clear();
    answer_list.clear();
    authority_list.clear();
    additions_list.clear();

    const wire_reader wire(message.data(), message.size());
    // QR is the only flag anyone looks at: RCODE, TC and the rest are reported as they come.
    if ((wire.byte_at(2) & 0x80) == 0) return 0;
    const auto id = static_cast<std::uint16_t>(wire.byte_at(0) | (wire.byte_at(1) << 8));
    id_out = id;

    // The counts are trusted only as far as the message reaches.
    const reply_context reply{message, wire, server_text, time_stamp, id};
    std::uint32_t offset = header_size;
    if (!read_section(reply, section::question, wire.u16_at(4), offset, question_list) ||
        !read_section(reply, section::answer, wire.u16_at(6), offset, answer_list) ||
        !read_section(reply, section::authority, wire.u16_at(8), offset, authority_list) ||
        !read_section(reply, section::additional, wire.u16_at(10), offset, additions_list)) {
        return 0;
    }
    return offset;
}

bool read_soa(const std::uint8_t* message, std::int32_t length, std::uint32_t offset,
              soa_data& soa) {
    soa = soa_data{};
    const std::uint32_t mname_size = read_name(message, length, offset, soa.domain_name);
    if (mname_size == 0) return false;
    offset += mname_size;
    const std::uint32_t rname_size = read_name(message, length, offset, soa.admin_mailbox);
    if (rname_size == 0) return false;
    offset += rname_size;
    // The bound is the whole message; RDLENGTH is not consulted.
    if (std::int64_t{offset} + 20 > length) return false;
    const wire_reader wire(message, static_cast<std::size_t>(length));
    soa.serial_num = wire.u32_at(offset);
    soa.refresh_sec = wire.u32_at(offset + 4);
    soa.retry_sec = wire.u32_at(offset + 8);
    soa.expire_sec = wire.u32_at(offset + 12);
    soa.min_sec = wire.u32_at(offset + 16);
    return true;
}

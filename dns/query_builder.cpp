#include "dns/query_builder.h"

#include "dns/labels.h"
#include "dns/message_header.h"
#include "dns/record_types.h"
#include "dns/reverse_name.h"
#include "platform/os.h"

namespace {

// "in-addr" and "arpa" with their length bytes.
constexpr std::size_t reverse_suffix_size = 13;

// 15 bits of a linear congruential generator. The ID only has to differ from
// one query to the next often enough; it is no defence against spoofing.
unsigned next_random() {
    static std::uint32_t state = [] {
        std::uint64_t seconds = 0;
        std::uint32_t millis = 0;
        os::clock_now(seconds, millis);
        return static_cast<std::uint32_t>(seconds);
    }();
    state = state * 1103515245u + 12345u;
    return (state >> 16) & 0x7fffu;
}

unsigned draw_digit(unsigned low, unsigned high) { return low + next_random() % (high - low + 1); }

// Types whose QNAME is the name itself.
bool takes_plain_name(std::uint32_t type) {
    return type == rr_type::a || type == rr_type::ns || type == rr_type::cname || type == rr_type::mx ||
           type == rr_type::txt;
}
}  // namespace

std::uint16_t make_packet_id() {
    const unsigned tens = draw_digit(1, 9);
    return static_cast<std::uint16_t>(tens * 10 + draw_digit(0, 9));
}

bool encode_name(std::string_view text, byte_list& out) {
    // The labels are the non-empty stretches between dots: leading, doubled
    // and trailing dots add nothing.
    const std::size_t start_size = out.size();
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t dot = text.find('.', start);
        if (dot == std::string_view::npos) dot = text.size();
        std::string_view label = text.substr(start, dot - start);
        if (!label.empty() && !append_label(label, out)) return false;
        start = dot + 1;
    }
    if (out.size() == start_size) return false;
    out.push_back(0);
    return true;
}

bool build_query(dns_entry& entry, std::string_view text, std::uint32_t type) {
    entry = dns_entry{};

    const std::uint16_t id = make_packet_id();

    // Room for the header, a length byte per label or the text's own dots,
    // the root, the reverse suffix and the question's type and class.
    byte_list message;
    message.reserve(header_size + text.size() + 2 + reverse_suffix_size + 4);
    // The ID, RD set, one question, nothing else.
    message.resize(header_size, 0);
    put_packet_id(id, message.data());
    message[2] = 0x01;
    message[5] = 0x01;
    bool encoded = false;
    if (takes_plain_name(type)) {
        encoded = encode_name(text, message);
    } else if (type == rr_type::ptr) {
        encoded = encode_reverse_name(text, message);
    }
    if (!encoded) return false;
    message.push_back(static_cast<std::uint8_t>((type >> 8) & 0xff));
    message.push_back(static_cast<std::uint8_t>(type & 0xff));
    message.push_back(0x00);
    message.push_back(0x01);

    entry.packet = shared_packet(std::move(message));
    entry.query.assign(text);
    entry.dns_type = static_cast<std::uint16_t>(type);
    entry.dns_class = 1;
    entry.packet_id = id;
    return true;
}

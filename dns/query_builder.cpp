#include "dns/query_builder.h"

#include <utility>

#include "dns/labels.h"
#include "dns/reverse_name.h"
#include "platform/os.h"

namespace {

// Types whose QNAME is the name itself: bit n stands for type n (1, 2, 5, 15, 16).
constexpr std::uint32_t name_path_types = 0x18026;
constexpr std::uint32_t type_ptr = 12;
constexpr std::size_t header_size = 12;
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

char draw_digit(unsigned low, unsigned high) {
    if (low > high) std::swap(low, high);
    return static_cast<char>('0' + low + next_random() % (high - low + 1));
}
}  // namespace

std::string make_packet_id() {
    std::string id(2, '0');
    id[0] = draw_digit(1, 9);
    id[1] = draw_digit(0, 9);
    return id;
}

bool append_name(std::string_view text, byte_list& out) {
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

bool encode_name(std::string_view text, byte_list& out) { return encode_alone(text, out, append_name); }

bool build_query(dns_entry& entry, std::string_view text, std::uint32_t type) {
    entry = dns_entry{};

    const std::string id_text = make_packet_id();
    const auto id = static_cast<std::uint16_t>((id_text[0] - '0') * 10 + (id_text[1] - '0'));

    // Room for the header, a length byte per label or the text's own dots,
    // the root, the reverse suffix and the question's type and class.
    byte_list message;
    message.reserve(header_size + text.size() + 2 + reverse_suffix_size + 4);
    // ID low byte first, RD set, one question, nothing else.
    message.resize(header_size, 0);
    message[0] = static_cast<std::uint8_t>(id & 0xff);
    message[1] = static_cast<std::uint8_t>(id >> 8);
    message[2] = 0x01;
    message[5] = 0x01;
    bool encoded = false;
    if (type <= 16 && ((name_path_types >> type) & 1u) != 0) {
        encoded = append_name(text, message);
    } else if (type == type_ptr) {
        encoded = append_reverse_name(text, message);
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

#include "dns/reverse_name.h"

#include <array>

#include "dns/labels.h"

bool encode_reverse_name(std::string_view text, byte_list& out) {
    if (text.empty()) return false;
    // The pieces between dots, last first. The text is not checked for being
    // an address: whatever it holds is reversed piece by piece, and a text
    // without dots (IPv6 among them) is one label.
    std::size_t end = text.size();
    for (std::size_t i = text.size(); i-- > 0;) {
        if (text[i] != '.') continue;
        const std::string_view piece = text.substr(i + 1, end - i - 1);
        if (!piece.empty() && !append_label(piece, out)) return false;
        end = i;
    }
    if (end > 0 && !append_label(text.substr(0, end), out)) return false;
    static constexpr std::array<std::string_view, 2> suffix{"in-addr", "arpa"};
    for (std::string_view label : suffix) append_label(label, out);
    out.push_back(0);
    return true;
}

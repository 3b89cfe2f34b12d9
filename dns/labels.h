#pragma once
// One length-prefixed label of a QNAME, shared by both name encoders.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "dns/bytes.h"

// Labels may be longer than the 63 bytes DNS allows: whatever fits one length byte goes out.
inline constexpr std::size_t max_label = 255;

// A label too long drops what was built, so no half name is ever handed out.
inline bool append_label(std::string_view label, byte_list& out) {
    if (label.size() > max_label) {
        out.clear();
        return false;
    }
    out.push_back(static_cast<std::uint8_t>(label.size()));
    out.insert(out.end(), label.begin(), label.end());
    return true;
}

#pragma once
// The labels of a QNAME, shared by both name encoders. The encoders append
// to the message being built, so a query is put together in one list.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "dns/bytes.h"

// Labels may be longer than the 63 bytes DNS allows: whatever fits one length byte goes out.
inline constexpr std::size_t max_label = 255;

// False, with nothing appended, for a label too long for its length byte.
inline bool append_label(std::string_view label, byte_list& out) {
    if (label.size() > max_label) return false;
    out.push_back(static_cast<std::uint8_t>(label.size()));
    out.insert(out.end(), label.begin(), label.end());
    return true;
}

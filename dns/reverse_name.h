#pragma once
// QNAME of a PTR query: the text's dot-separated pieces reversed, then
// in-addr and arpa.

#include <string_view>

#include "dns/bytes.h"

// Appends the QNAME behind what `out` holds. False for empty text or a piece
// too long for a label; `out` may then hold part of a name.
bool encode_reverse_name(std::string_view text, byte_list& out);

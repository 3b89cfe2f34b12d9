#pragma once
// QNAME of a PTR query: the text's dot-separated pieces reversed, then
// in-addr and arpa.

#include <string_view>

#include "dns/bytes.h"

bool encode_reverse_name(std::string_view text, byte_list& out);

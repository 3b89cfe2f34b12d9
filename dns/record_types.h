#pragma once
// The record type numbers the tool asks for or decodes the data of.

#include <cstdint>

namespace rr_type {
enum : std::uint16_t { a = 1, ns = 2, cname = 5, soa = 6, ptr = 12, mx = 15, txt = 16, aaaa = 28 };
}  // namespace rr_type

#pragma once
// The record type numbers the tool asks for or decodes the data of.

#include <cstdint>

namespace rr_type {
inline constexpr std::uint16_t a = 1;
inline constexpr std::uint16_t ns = 2;
inline constexpr std::uint16_t cname = 5;
inline constexpr std::uint16_t soa = 6;
inline constexpr std::uint16_t ptr = 12;
inline constexpr std::uint16_t mx = 15;
inline constexpr std::uint16_t txt = 16;
inline constexpr std::uint16_t aaaa = 28;
}  // namespace rr_type

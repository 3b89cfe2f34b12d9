#pragma once
// The tool's one time scale: 100 ns ticks since 1601-01-01 00:00:00 UTC, the
// scale file times come in, so the system layer and the clock share it.

#include <cstdint>

inline constexpr std::uint64_t ticks_per_second = 10000000ULL;
inline constexpr std::uint64_t seconds_1601_to_1970 = 11644473600ULL;
inline constexpr std::uint64_t ticks_1601_to_1970 = seconds_1601_to_1970 * ticks_per_second;

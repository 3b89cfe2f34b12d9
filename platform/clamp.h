#pragma once
// System calls that take a count or a time as an int (or a 32-bit long or
// DWORD) get at most INT_MAX of a larger one; their callers loop or wait
// again for the rest.

#include <climits>
#include <cstdint>

inline int clamp_to_int(std::uint64_t value) { return value > INT_MAX ? INT_MAX : static_cast<int>(value); }

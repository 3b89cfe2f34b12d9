#pragma once
// Reads one domain name out of a message, following compression pointers.

#include <cstdint>
#include <span>
#include <string>

// Result: the bytes the name occupies at `offset` (0 on any fault; the root
// name counts 1). `out` gets each label followed by a dot; after a fault its
// content must not be used. Never reads outside the message.
std::uint32_t read_name(std::span<const std::uint8_t> message, std::uint32_t offset, std::string& out);

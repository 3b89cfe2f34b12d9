#pragma once
// Reads one domain name out of a message, following compression pointers.

#include <cstdint>
#include <string>

#include "dns/wire_reader.h"

// Reads the name at the cursor. Result: the bytes the name occupies there
// (0 on any fault; the root name counts 1); the cursor moves past them, and
// stays where it was on a fault. `out` gets each label followed by a dot;
// after a fault its content must not be used. Never reads outside the message.
std::uint32_t read_name(wire_reader& wire, std::string& out);

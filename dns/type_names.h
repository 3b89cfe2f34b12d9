#pragma once
// The word for a record type number, for printing only ("unk" when unknown).

#include <cstdint>
#include <string_view>

std::string_view record_type_name(std::uint16_t type);

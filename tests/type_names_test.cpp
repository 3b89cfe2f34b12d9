#include "dns/type_names.h"

#include <gtest/gtest.h>

namespace {

// The words at the edges of each run of known numbers.
TEST(TypeNames, NeighboursKeptApart) {
    const std::pair<std::uint16_t, std::string_view> rows[] = {
        {0, "unk"}, {1, "A"}, {28, "AAAA"}, {30, "unk"}, {51, "NSEC3PARAM"}, {56, "unk"}, {254, "MAILA"},
        {255, "ANY"}, {256, "unk"}, {32768, "TA"}, {32769, "DLV"}, {32770, "unk"}, {65535, "unk"}};
    for (const auto& [type, word] : rows) EXPECT_EQ(record_type_name(type), word) << type;
}

}  // namespace

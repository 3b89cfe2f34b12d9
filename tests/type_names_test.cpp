#include "dns/type_names.h"

#include <gtest/gtest.h>

namespace {

// A number between known ones, or beyond the first or last, has no word of its own; the numbers below 256 are
// looked up by index, the others by search.
TEST(TypeNames, GapsAndEnds) {
    const std::pair<std::uint16_t, std::string_view> rows[] = {
        {0, "unk"},   {1, "A"},       {30, "unk"},   {253, "unk"},   {254, "MAILA"}, {255, "ANY"},
        {256, "unk"}, {32767, "unk"}, {32768, "TA"}, {32769, "DLV"}, {32770, "unk"}, {65535, "unk"},
    };
    for (const auto& [type, word] : rows) EXPECT_EQ(record_type_name(type), word) << type;
}

}  // namespace

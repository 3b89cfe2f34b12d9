#include "dns/type_names.h"

#include <gtest/gtest.h>

namespace {

TEST(TypeNames, NeighboursKeptApart) {
    const struct {
        std::uint16_t type;
        std::string_view word;
    } rows[] = {
        {0, "unk"},     {1, "A"},          {19, "X25"},   {23, "NSAP_PTR"}, {28, "AAAA"},
        {30, "unk"},    {51, "NSEC3PARAM"}, {56, "unk"},  {253, "unk"},     {254, "MAILA"},
        {255, "ANY"},   {256, "unk"},      {32768, "TA"}, {32769, "DLV"},   {32770, "unk"},
        {65535, "unk"},
    };
    for (const auto& r : rows) EXPECT_EQ(record_type_name(r.type), r.word) << r.type;
}

}  // namespace

// The system fields of the run record, made from the numbers either backend gives.
#include "platform/host_identity.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

TEST(HostIdentity, SystemFields) {
    // Identity, separator and its replacement, the fields: only a build read from the core library is cut behind
    // its first digit, an unknown name reads "<unk>", and the separator is taken out of each field.
    // clang-format off
    const std::tuple<system_identity, const char*, const char*, const char*> rows[] = {
        {system_identity{true, "Windows", 10, 0, 22621, true}, ";", " ", "Windows;10.0.-;10.0.2;64"},
        {system_identity{false, "Windows", 6, 3, 9600, true}, ";", " ", "Windows;6.3.-;6.3.9;32"},
        {system_identity{true, "Windows", 0, 0, 0, false}, ";", " ", "Windows;0.0.-;0.0.0;64"},
        {system_identity{true, "Linux", 6, 1, 158, false}, ";", " ", "Linux;6.1.-;6.1.158;64"},
        {system_identity{true, "", 4294967295u, 0, 12, false}, ";", " ", "<unk>;4294967295.0.-;4294967295.0.12;64"},
        {system_identity{true, "a;b", 1, 2, 3, false}, ";", " ", "a b;1.2.-;1.2.3;64"},
    };
    // clang-format on
    for (const auto& [identity, separator, replacement, expected] : rows) {
        std::string out = "system: ";
        write_system_fields(identity, out, separator, replacement);
        EXPECT_EQ(out, std::string("system: ") + expected) << expected;
    }
}

}  // namespace

// The system fields of the run record, made from the numbers either backend gives.
#include "platform/host_identity.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

system_identity identity_of(const char* name, std::uint32_t major, std::uint32_t minor, std::uint32_t build,
                            bool from_file, bool is_64bit) {
    system_identity identity;
    identity.os_name = name;
    identity.major = major;
    identity.minor = minor;
    identity.build = build;
    identity.version_from_file = from_file;
    identity.is_64bit = is_64bit;
    return identity;
}

TEST(HostIdentity, SystemFields) {
    // Identity, separator and its replacement, the fields: only a build read from the core library is cut behind
    // its first digit, an unknown name reads "<unk>", and the separator is taken out of each field.
    // clang-format off
    const std::tuple<system_identity, const char*, const char*, const char*> rows[] = {
        {identity_of("Windows", 10, 0, 22621, true, true), ";", " ", "Windows;10.0.-;10.0.2;64"},
        {identity_of("Windows", 6, 3, 9600, true, false), ";", " ", "Windows;6.3.-;6.3.9;32"},
        {identity_of("Windows", 0, 0, 0, false, true), ";", " ", "Windows;0.0.-;0.0.0;64"},
        {identity_of("Linux", 6, 1, 158, false, true), ";", " ", "Linux;6.1.-;6.1.158;64"},
        {identity_of("", 4294967295u, 0, 12, false, true), ";", " ", "<unk>;4294967295.0.-;4294967295.0.12;64"},
        {identity_of("a;b", 1, 2, 3, false, true), ";", " ", "a b;1.2.-;1.2.3;64"},
        {identity_of("Linux", 6, 1, 158, false, true), ".", "_", "Linux.6_1_-.6_1_158.64"},
        {identity_of("Windows", 10, 0, 22621, true, true), ".", "_", "Windows.10_0_-.10_0_2.64"},
        {identity_of("Linux", 6, 1, 158, false, true), "", "x", "Linux6.1.-6.1.15864"},
    };
    // clang-format on
    for (const auto& [identity, separator, replacement, expected] : rows) {
        std::string out = "system: ";
        write_system_fields(identity, out, separator, replacement);
        EXPECT_EQ(out, std::string("system: ") + expected) << expected;
    }
}

}  // namespace

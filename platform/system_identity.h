#pragma once
// The facts of the system for the run record, as the platform gives them:
// names and numbers only. Their text is made in one place, host_identity.cpp.

#include <cstdint>
#include <string>

struct system_identity {
    bool is_64bit = false;
    std::string os_name;  // empty where the system can't tell
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;         // the build, or the kernel's patch level
    bool version_from_file = false;  // the numbers are the product version of the system's core library
};

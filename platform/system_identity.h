#pragma once
// The facts of the system for the run record, as the platform gives them.

#include <string>

struct system_identity {
    bool is_64bit = false;
    std::string os_name;
    std::string os_version;          // "major.minor.-"
    std::string os_build;            // "major.minor.build"
    bool version_from_file = false;  // the numbers are the file version of the system's core library
};

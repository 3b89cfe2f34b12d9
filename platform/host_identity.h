#pragma once
// Facts of the machine for the run record.

#include <string>
#include <string_view>

#include "platform/system_identity.h"

// The computer's name, "<unk>" if the system can't tell.
std::string get_host_name();
// Full path of the running program, empty on failure.
std::string get_module_path();
// The system's facts: filled by the platform (platform/os.h).
void get_system_identity(system_identity& identity);
// The system's name ("<unk>" if it can't tell), "major.minor.-",
// "major.minor.build" and the word size, joined by separator; each field has
// separator replaced by replacement first.
void write_system_fields(const system_identity& identity, std::string& out, std::string_view separator,
                         std::string_view replacement);
bool is_remote_program();
bool is_removable_program();

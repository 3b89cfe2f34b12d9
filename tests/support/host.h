#pragma once
// What unit tests need of the system they run on, in one form for each.

#include <functional>
#include <string>
#include <string_view>

namespace test_support {

// Sets an environment variable of this process, or removes it (value null).
void set_env(const char* name, const char* value);
// Runs `body` with the process's standard input reading `bytes`, then puts
// the old standard input back.
void with_stdin(std::string_view bytes, const std::function<void()>& body);
// A file that can be opened for writing but refuses every write; empty where
// the system has none.
std::string full_device();

}  // namespace test_support

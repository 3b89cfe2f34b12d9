#pragma once
// Runs the built vexa binary as a child process: arguments (program name not
// included), optional bytes on its standard input, a hard time limit; captures
// the exit code and both output streams.

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace test_support {

struct vexa_run {
    int exit_code = -1;      // as the system keeps it: -1 from main reads 255
    int signal = 0;          // the signal that ended it, 0 if it exited
    bool timed_out = false;  // killed at the time limit
    std::string out;
    std::string err;
};

vexa_run run_vexa(const std::vector<std::string>& args, std::string_view input = {},
                  std::chrono::milliseconds limit = std::chrono::seconds(20));

}  // namespace test_support

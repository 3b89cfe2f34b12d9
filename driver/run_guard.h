#pragma once
// The acts at the end of a run that got past its option parsing: the erase
// sequence, the elapsed time, and the named event, set last of all so that a
// waiting process finds the report complete.

#include <cstdint>
#include <string>

#include "driver/cmd_params.h"

class run_guard {
public:
    run_guard() = default;
    ~run_guard();
    run_guard(const run_guard&) = delete;
    run_guard& operator=(const run_guard&) = delete;

    // Takes what the end of the run needs from the parsed options.
    void arm(const cmd_params& params);

private:
    void report_elapsed() const;

    bool erase_line_ = false;
    std::uint64_t start_time_ = 0;
    bool profile_ = false;
    std::string diag_file_;
    std::string signal_name_;
};

// Sets the named event; an empty name does nothing.
void signal_event(const std::string& name);

// "->" elapsed seconds (six significant digits) " secs".
std::string elapsed_text(double seconds);

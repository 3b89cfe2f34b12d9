#include "driver/run_guard.h"

#include <charconv>

#include "driver/messages.h"
#include "platform/fileio.h"
#include "platform/os.h"
#include "timefmt/time_parts.h"

void signal_event(const std::string& name) {
    if (!name.empty()) os::set_named_event(name);
}

std::string elapsed_text(double seconds) {
    char digits[64];
    auto end = std::to_chars(digits, digits + sizeof digits, seconds, std::chars_format::general, 6).ptr;
    return "->" + std::string(digits, end) + " secs";
}

void run_guard::arm(const cmd_params& params) {
    erase_line_ = params.erase_at_end;
    if (params.diag_active && params.diag_stream != os::invalid_file) diag_file_ = params.diag_file;
    profile_ = params.profile;
    if (profile_ || !diag_file_.empty()) start_time_ = elapsed_stamp();
    signal_name_ = params.signal_name;
}

void run_guard::report_elapsed() const {
    std::string text = elapsed_text(stamp_difference(start_time_, elapsed_stamp()));
    if (profile_) write_error(text + "\n");
    if (diag_file_.empty()) return;
    uni::fileio file;
    if (file.open_file(diag_file_, true, false)) {
        file.append_text(text);
        file.close();
    }
}

run_guard::~run_guard() {
    if (erase_line_) write_error(erase_sequence);
    if (start_time_ != 0) report_elapsed();
    signal_event(signal_name_);
}

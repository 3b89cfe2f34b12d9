#include "driver/run_record.h"

#include "driver/messages.h"
#include "platform/host_identity.h"
#include "timefmt/formats.h"
#include "timefmt/time_parts.h"

namespace {
std::string& banner_text() {
    static std::string banner(tool_name);
    return banner;
}

bool help_asked(arg_list args) {
    bool asked = find_flag("-h", args);
    asked = find_flag("-help", args) || asked;
    asked = find_flag("/?", args) || asked;
    asked = find_flag("--help", args) || asked;
    return asked || args.size() == 1;
}

void append_moment(std::string& record, const time_parts& now, const arg_list& args) {
    std::string date_format = "mm/dd/yyyy";
    peek_value("-dateformat", date_format, args);
    std::uint32_t word = 0;
    compile_formats(word, date_format, record_clock_format, false);
    std::string date_text, clock_text;
    render_date_time(date_text, clock_text, now, word);
    record.append(time_label).append(": ").append(date_text).append(" ").append(clock_text);
    record.append(" ").append(zone_label).append("; ");
}

void append_machine(std::string& record) {
    record.append(host_label).append(": ").append(get_host_name()).append("; ");
    system_identity identity;
    get_system_identity(identity);
    record.append(system_label).append(": ");
    write_system_fields(identity, record, ";", " ");
    bool remote = is_remote_program();
    bool removable = is_removable_program();
    if (remote || removable) {
        record += "; ";
        if (remote) record += "<~>";
        if (removable) record += ":=";
    }
}
}  // namespace

const std::string& tool_banner() { return banner_text(); }

bool build_run_record(const arg_list& args, std::string& record) {
    if (args.empty()) return false;
    if (has_flag(bom_flag, args)) record += "\xEF\xBB\xBF";
    time_parts now;
    banner_text() = std::string(tool_name) + " ver: " + std::string(tool_version);
    if (help_asked(args)) {
        show_usage();
        return false;
    }
    record += tool_banner();
    record += '\n';
    append_moment(record, now, args);
    append_machine(record);
    record += '\n';
    record += '"';
    record.append(command_label).append(": ");
    if (has_flag("-pipe", args)) record += "<filelist> ... | ";
    std::string echo;
    join_args(echo, args, '\'');
    record += echo;
    record += "\"\n";
    return true;
}

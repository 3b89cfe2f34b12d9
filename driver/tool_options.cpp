#include "driver/tool_options.h"

#include <string_view>

#include "dns/record_types.h"
#include "driver/common_options.h"
#include "driver/messages.h"
#include "platform/text.h"

namespace {

struct pipe_command {
    std::string_view name;
    std::uint32_t type;
};

constexpr pipe_command pipe_commands[] = {
    {"-url_pipe", rr_type::a},  {"-ip_pipe", rr_type::ptr},      {"-mx_pipe", rr_type::mx},
    {"-ns_pipe", rr_type::ns}, {"-cname_pipe", rr_type::cname}, {"-txt_pipe", rr_type::txt},
};

struct plain_command {
    std::string_view name;
    std::string input_params::*field;
    std::uint32_t type;
};

constexpr plain_command plain_commands[] = {
    {"-url", &input_params::url_value, rr_type::a},   {"-ip", &input_params::ip_value, rr_type::ptr},
    {"-mx", &input_params::mx_value, rr_type::mx},    {"-txt", &input_params::txt_value, rr_type::txt},
    {"-ns", &input_params::ns_value, rr_type::ns},    {"-cname", &input_params::ns_value, rr_type::cname},
};

void parse_pipe_commands(input_params& params, arg_list& args) {
    for (const auto& command : pipe_commands) {
        if (!find_flag(command.name, args)) continue;
        if (!params.enum_dir_given) params.pipe_input = true;
        params.query_type = command.type;
    }
}

bool parse_plain_commands(input_params& params, arg_list& args) {
    for (const auto& command : plain_commands) {
        std::string& field = params.*command.field;
        if (!find_value(command.name, field, args)) continue;
        if (!params.query_target.empty()) {
            write_error(message::command_clash);
            return false;
        }
        params.query_target = field;
        params.query_type = command.type;
    }
    return true;
}

void parse_number_option(std::string_view name, std::uint32_t& field, arg_list& args) {
    std::string value;
    if (find_value(name, value, args)) parse_number(value, field);
}

}  // namespace

bool parse_tool_options(input_params& params, arg_list& args) {
    if (!parse_common_options(params, args)) return false;
    parse_pipe_commands(params, args);
    if (!parse_plain_commands(params, args)) return false;
    if (!find_value("-server", params.server, args)) {
        write_error(message::no_server);
        return false;
    }
    if (find_flag("-ipv6", args)) params.ipv6 = true;
    parse_number_option("-timeout", params.timeout_secs, args);
    parse_number_option("-retry", params.retries, args);
    parse_number_option("-delay", params.delay_secs, args);
    return true;
}

// What the report's writers read of the options.
report_settings make_report_settings(const input_params& params) {
    report_settings settings;
    settings.xml_output = params.xml_output;
    settings.format_word = params.format_word;
    settings.date_format = params.date_format;
    settings.time_format = params.time_format;
    settings.server_width = params.server.size();
    settings.separator = params.separator;
    settings.compact_columns = params.compact_columns;
    settings.pair_blank = params.pair_blank;
    settings.clash_char = params.clash_char;
    settings.clash_subst = params.clash_subst;
    return settings;
}

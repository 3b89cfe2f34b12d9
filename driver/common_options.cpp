#include "driver/common_options.h"

#include "driver/messages.h"
#include "platform/text.h"
#include "timefmt/formats.h"

namespace {

void parse_head(cmd_params& params, const arg_list& args) {
    if (params.command_line.empty()) join_args(params.command_line, args, '"');
    if (params.program_name.empty()) {
        std::string_view name = args.front();
        std::size_t slash = name.rfind('\\');
        if (slash != std::string_view::npos) name.remove_prefix(slash + 1);
        std::size_t dot = name.rfind('.');
        if (dot != std::string_view::npos) name = name.substr(0, dot);
        params.program_name = name;
    }
}

enum class output_form { csv, csvgen, csvl2t, bodyfile, xml, multiline };

void clear_output_forms(cmd_params& params) {
    params.xml_output = params.csv_output = params.csvl2t_output = false;
    params.bodyfile_output = params.multiline_output = false;
}

void apply_output_form(cmd_params& params, output_form form) {
    clear_output_forms(params);
    switch (form) {
        case output_form::csv:
            params.csv_output = true;
            set_csv_separator(params, ",");
            params.compact_columns = !params.pair_datetime;
            break;
        case output_form::csvgen:
            params.csvgen_output = true;
            set_csv_separator(params, ",");
            params.compact_columns = true;
            break;
        case output_form::csvl2t:
            params.csvl2t_output = true;
            set_csv_separator(params, ",");
            params.show_header = true;
            break;
        case output_form::bodyfile:
            params.bodyfile_output = true;
            set_csv_separator(params, "|");
            params.show_header = true;
            break;
        case output_form::xml:
            params.xml_output = true;
            set_csv_separator(params, "");
            params.show_header = false;
            break;
        case output_form::multiline:
            params.multiline_output = true;
            params.separator.clear();
            params.clash_char = 0;
            params.clash_subst = 0;
            params.show_header = true;
            break;
    }
}

void parse_output_forms(cmd_params& params, arg_list& args) {
    static constexpr std::pair<std::string_view, output_form> forms[] = {
        {"-csv", output_form::csv},           {"-csvgen", output_form::csvgen},
        {"-csvl2t", output_form::csvl2t},     {"-bodyfile", output_form::bodyfile},
        {"-xml", output_form::xml},           {"-multiline", output_form::multiline},
    };
    for (const auto& [name, form] : forms)
        if (find_flag(name, args)) apply_output_form(params, form);
}

void take_format(std::string& field, std::string_view option, bool (*acceptable)(std::string_view),
                 arg_list& args) {
    std::string value;
    if (!find_value(option, value, args)) return;
    if (acceptable(value)) {
        to_lower(value);
        field = value;
    } else {
        write_error("invalid " + value + ", using default format\n");
    }
}

}  // namespace

void set_csv_separator(cmd_params& params, std::string_view text) {
    params.separator = text;
    std::string lower(text);
    to_lower(lower);
    if (lower.find('|') != std::string::npos) {
        params.clash_char = '|';
        params.clash_subst = ';';
    } else if (lower.find(',') != std::string::npos) {
        params.clash_char = ',';
        params.clash_subst = ' ';
    } else if (lower == "tab" || lower == "\\t") {
        params.separator = "\t";
        params.clash_char = params.clash_subst = 0;
    } else {
        params.clash_char = params.clash_subst = 0;
    }
}

bool parse_common_options(cmd_params& params, arg_list& args) {
    if (args.empty()) return false;
    parse_head(params, args);
    if (find_flag("-pair_datetime", args)) params.pair_datetime = true;
    parse_output_forms(params, args);
    if (find_flag("-pipe", args)) params.pipe_input = true;
    std::string value;
    if (find_value("-csv_separator", value, args)) set_csv_separator(params, value);
    if (find_flag("-no_whitespace", args)) {
        params.compact_columns = true;
        params.pair_blank = false;
        std::erase(params.separator, ' ');
    }
    take_format(params.date_format, "-dateformat", date_format_acceptable, args);
    take_format(params.time_format, "-timeformat", time_format_acceptable, args);
    if (find_flag("-verbose", args) || find_flag("-v", args)) params.verbose = true;
    if (find_flag("-quiet", args)) params.erase_at_end = false;
    compile_formats(params.format_word, params.date_format, params.time_format, params.pair_datetime);
    return true;
}

#include "driver/common_options.h"

#include "driver/messages.h"
#include "input/filter.h"
#include "platform/fileio.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "timefmt/formats.h"
#include "timefmt/time_parts.h"

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

// ------------------------------------------------------------ output forms --
// Each form sets its flag and its separator (multiline: none). -csvgen's
// flag is not cleared by a later form.
struct output_form {
    std::string_view name;
    bool cmd_params::*flag;
    std::string_view separator;
};

constexpr output_form output_forms[] = {
    {"-csv", &cmd_params::csv_output, ","},       {"-csvgen", &cmd_params::csvgen_output, ","},
    {"-csvl2t", &cmd_params::csvl2t_output, ","}, {"-bodyfile", &cmd_params::bodyfile_output, "|"},
    {"-xml", &cmd_params::xml_output, ""},        {"-multiline", &cmd_params::multiline_output, ""},
};

void apply_output_form(cmd_params& params, const output_form& form) {
    params.xml_output = params.csv_output = params.csvl2t_output = false;
    params.bodyfile_output = params.multiline_output = false;
    params.*form.flag = true;
    set_csv_separator(params, form.separator);
    // -csv packs its columns unless date and time stand as a pair; -csvgen always.
    if (form.flag == &cmd_params::csv_output) params.compact_columns = !params.pair_datetime;
    if (form.flag == &cmd_params::csvgen_output) params.compact_columns = true;
}

void parse_output_forms(cmd_params& params, arg_list& args) {
    for (const output_form& form : output_forms)
        if (find_flag(form.name, args)) apply_output_form(params, form);
}

// ----------------------------------------------------------- diagnostics --
void parse_diags(cmd_params& params, arg_list& args) {
    if (!find_value("-diags", params.diag_file, args)) return;
    params.diag_stream = os::file_open(params.diag_file, os::open_mode::write_truncate).file;
    if (params.diag_stream == os::invalid_file) {
        params.diag_file.clear();
        return;
    }
    params.diag_active = true;
    std::string line = "->" + params.command_line + "\r\n";
    os::file_write(params.diag_stream, line.data(), line.size());
    if (find_flag("-l2", args))
        params.diag_level = 2;
    else if (find_flag("-l3", args))
        params.diag_level = 3;
}

// --------------------------------------------------------------- aliases --
void drop_one_trailing_backslash(std::string& text) {
    if (!text.empty() && text.back() == '\\') text.pop_back();
}

bool parse_aliases(std::string_view option, std::map<std::string, std::string>& into, bool empty_is_error,
                   bool path_form, arg_list& args) {
    std::string value;
    if (!find_value(option, value, args)) return true;
    std::vector<std::string> pieces;
    split_text(value, '|', pieces, true, false);
    if ((value.empty() && empty_is_error) || pieces.size() % 2 != 0) {
        write_error(message::imbalanced_alias);
        return false;
    }
    for (std::size_t i = 0; i + 1 < pieces.size(); i += 2) {
        std::string alias = expand_path(pieces[i], true);
        std::string target = expand_path(pieces[i + 1], true);
        to_lower(alias);
        if (path_form) {
            drop_one_trailing_backslash(alias);
            remove_char(target, '"');
            drop_one_trailing_backslash(target);
        }
        into[alias] = target;
    }
    return true;
}

// ------------------------------------------------------- plain settings --
void parse_stored_options(cmd_params& params, arg_list& args) {
    std::string value;
    if (find_flag("-gzip", args)) params.compress = params.gzip = true;
    if (find_flag("-zlib", args)) params.compress = params.zlib = true;
    if (find_value("-threads", value, args)) parse_number(value, params.threads);
    if (find_value("-zlibex", params.zlibex_value, args)) params.compress = params.zlibex = true;
}

bool refuse_unoffered(arg_list& args) {
    std::string value;
    if (find_value("-sqlite_log", value, args) || find_value("-sqlite", value, args)) {
        write_error(message::not_offered);
        return false;
    }
    return true;
}

void parse_identity_options(cmd_params& params, arg_list& args) {
    std::string value;
    find_value("-signal", params.signal_name, args);
    if (find_value("-hostname", params.host_name, args)) params.host_name_given = true;
    if (find_flag("-split_pathfile", args)) params.split_pathfile = true;
    if (find_value("-username", params.user_name, args)) params.user_name_given = true;
    if (find_value("-cpuinst", value, args)) parse_number_c(value, params.cpu_instance);
    if (find_value("-cpu", value, args)) parse_number_c(value, params.cpu);
    if (find_value("-fragment_files", value, args)) {
        parse_number_c(value, params.fragment_files);
        params.separate_files = true;
    }
    if (find_flag("-separate_files", args)) params.separate_files = true;
}

// ------------------------------------------------------------ results file --
// The file is tried now, so a path that can't be written fails the parse;
// the driver makes it anew. The tried file is removed again, but never a
// device or pipe (such as /dev/null), nor a file -append found in place.
bool parse_results_file(cmd_params& params, arg_list& args) {
    std::string value;
    if (!find_value("-out", value, args) && !find_value("-outfile", value, args)) return true;
    params.output_file = expand_path(value, true);
    replace_char(params.output_file, '/', '\\');
    params.output_file_given = true;
    bool append = has_flag("-append", args);
    params.append_output = append;
    os::file_facts before;
    bool existed = os::file_stat(params.output_file, os::stat_text::path, before);
    uni::fileio probe;
    if (!probe.open_results(params.output_file, !append) && append)
        probe.open_results(params.output_file, true);
    if (!probe.is_open()) {
        write_error(message::results_file_refused, params.output_file);
        return false;
    }
    probe.close();
    if (!existed || (before.is_regular && !append)) os::file_remove(params.output_file);
    return true;
}

void parse_walk_options(cmd_params& params, arg_list& args) {
    std::string value;
    if (find_value("-outdir", value, args)) {
        params.output_dir = expand_path(value, true);
        params.output_dir_given = true;
    }
    if (find_value("-enumdir", value, args)) {
        params.enum_dir = expand_path(value, true);
        params.enum_dir_given = true;
    }
    if (find_value("-num_subdirs", value, args)) parse_number_c(value, params.enum_depth);
    if (find_flag("-profile", args)) params.profile = true;
    if (find_flag("-pipe", args)) params.pipe_input = true;
}

// ---------------------------------------------------------------- filter --
void parse_filters(cmd_params& params, arg_list& args) {
    std::string value;
    while (find_value("-filter", value, args)) {
        std::vector<filter_entry> entries;
        parse_filter(value, entries);
        params.filter.entries.insert(params.filter.entries.end(), entries.begin(), entries.end());
        std::string filter_path;
        if (!params.filter.entries.empty() && find_value("-filter_path", filter_path, args)) {
            to_lower(filter_path);
            for (filter_entry& entry : params.filter.entries) entry.filter_path = filter_path;
        }
    }
    while (find_value("-filter_sig", value, args)) parse_filter_sig(value, params.filter.entries);
}

// ----------------------------------------------------------- time bounds --
enum class bound_result { refused, ignored, set };

// The date, and the clock behind the first blank (or `default_clock`).
bound_result parse_bound(std::string_view value, std::string_view default_clock, time_bound& bound) {
    bound = time_bound{};
    std::size_t blank = value.find(' ');
    std::string_view date = value.substr(0, blank);
    std::string_view clock = blank == std::string_view::npos ? default_clock : value.substr(blank + 1);
    if (date.empty()) return bound_result::refused;
    char delimiter = date.find('/') != std::string_view::npos   ? '/'
                     : date.find('-') != std::string_view::npos ? '-'
                                                                : '\0';
    if (delimiter == '\0') return bound_result::refused;
    calendar_fields fields;
    if (!parse_date_time(date, clock, "YMD", delimiter, fields)) return bound_result::ignored;
    std::uint64_t ticks = fields_to_ticks(fields.year, fields.month, fields.day, fields.hour, fields.minute,
                                          fields.second, fields.millisecond);
    time_parts moment(ticks);
    if (!moment.valid) return bound_result::ignored;
    bound.active = true;
    bound.file_time = ticks;
    bound.unix_time = static_cast<std::uint32_t>(moment.unix_seconds);
    return bound_result::set;
}

bool parse_time_bounds(cmd_params& params, arg_list& args) {
    std::string value;
    if (find_value("-cmd_start_time", value, args)) {
        bound_result result = parse_bound(value, "", params.filter.start);
        if (result == bound_result::refused) return false;
        if (result == bound_result::set) {
            params.filter.stop = {true, ~std::uint64_t{0}, ~std::uint32_t{0}};
        } else {
            params.filter.stop = time_bound{};
            write_error(message::bad_start_time);
        }
    }
    if (find_value("-cmd_stop_time", value, args)) {
        bound_result result = parse_bound(value, "23:59:59", params.filter.stop);
        if (result == bound_result::refused) return false;
        bool before_start =
            params.filter.start.active && params.filter.stop.file_time < params.filter.start.file_time;
        if (result != bound_result::set || before_start) {
            params.filter.stop = time_bound{};
            write_error(message::bad_stop_time);
        }
    }
    return true;
}

// ------------------------------------------------------- report settings --
void take_format(std::string& field, std::string_view option, bool (*acceptable)(std::string_view),
                 arg_list& args) {
    std::string value;
    if (!find_value(option, value, args)) return;
    if (acceptable(value)) {
        to_lower(value);
        field = value;
    } else {
        write_error(message::bad_format, value);
    }
}

void parse_report_settings(cmd_params& params, arg_list& args) {
    if (find_flag("-base10", args)) params.base16 = false;
    if (find_flag("-base16", args)) params.base16 = true;
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
}

}  // namespace

void set_csv_separator(cmd_params& params, std::string_view text) {
    params.separator = text;
    if (text.find('|') != std::string_view::npos) {
        params.clash_char = '|';
        params.clash_subst = ';';
    } else if (text.find(',') != std::string_view::npos) {
        params.clash_char = ',';
        params.clash_subst = ' ';
    } else if (same_text(text, "tab") || same_text(text, "\\t")) {
        params.separator = "\t";
        params.clash_char = params.clash_subst = 0;
    } else {
        params.clash_char = params.clash_subst = 0;
    }
}

// The options are looked up in this fixed order; it decides every tie, and
// what a value that looks like an option becomes.
bool parse_common_options(cmd_params& params, arg_list& args) {
    if (args.empty()) return false;
    parse_head(params, args);
    if (find_flag("-pair_datetime", args)) params.pair_datetime = true;
    parse_diags(params, args);
    parse_output_forms(params, args);
    if (!parse_aliases("-alias", params.aliases, true, false, args)) return false;
    if (!parse_aliases("-aliaspath", params.alias_paths, false, true, args)) return false;
    parse_stored_options(params, args);
    if (!refuse_unoffered(args)) return false;
    parse_identity_options(params, args);
    if (!parse_results_file(params, args)) return false;
    parse_walk_options(params, args);
    parse_filters(params, args);
    if (!parse_time_bounds(params, args)) return false;
    parse_report_settings(params, args);
    compile_formats(params.format_word, params.date_format, params.time_format, params.pair_datetime);
    return true;
}

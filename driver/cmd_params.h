#pragma once
// The common parameter block: every option that is not about DNS. Many are
// accepted and stored only because the common parser knows them.

#include <cstdint>
#include <map>
#include <string>

#include "input/filter.h"
#include "platform/os.h"

struct cmd_params {
    cmd_params() = default;
    virtual ~cmd_params();
    cmd_params(const cmd_params&) = delete;
    cmd_params& operator=(const cmd_params&) = delete;

    std::string command_line;
    std::string program_name;
    std::string output_file;
    std::string output_dir;
    std::string user_name;
    std::string host_name;
    std::map<std::string, std::string> alias_paths;
    std::map<std::string, std::string> aliases;
    std::string date_format = "yyyy-mm-dd";
    std::string time_format = "hh:mm:ss.xxx";
    std::uint32_t format_word = 0;
    char clash_char = '|';  // 0 = none
    char clash_subst = ';';
    std::string separator = " | ";
    bool compact_columns = false;
    bool pair_blank = true;
    bool base16 = true;
    bool user_name_given = false;
    bool host_name_given = false;
    bool split_pathfile = false;
    bool compress = false;
    bool gzip = false, zlib = false, zlibex = false;
    std::string zlibex_value;
    std::uint32_t threads = 0;
    bool output_dir_given = false;
    bool output_file_given = false;
    bool append_output = false;  // -append: the report goes behind what the results file holds
    std::uint32_t cpu_instance = 0xffffffffu;
    std::uint32_t cpu = 0;
    bool separate_files = false;
    std::uint32_t fragment_files = 0;
    bool xml_output = false;
    bool csv_output = false, csvl2t_output = false, csvgen_output = false;
    bool bodyfile_output = false, multiline_output = false;
    bool verbose = true;
    bool erase_at_end = true;
    bool pair_datetime = false;
    bool diag_active = false;
    std::int32_t diag_level = 0;
    os::file_handle diag_stream = os::invalid_file;  // owned; closed by the destructor
    std::string diag_file;
    bool profile = false;
    std::string signal_name;
    filter_settings filter;
    bool pipe_input = false;
    std::string enum_dir;
    std::uint32_t enum_depth = 0;
    bool enum_dir_given = false;
    std::string system_version;
    std::uint32_t system_major = 0, system_minor = 0, system_patch = 0;
};

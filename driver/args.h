#pragma once
// The command line as a list of byte strings, program name first, and the
// look-ups of the option parsers. Options match as whole arguments, case-blind;
// only the first occurrence counts, and a found option is taken out of the list.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

using arg_list = std::vector<std::string>;

// From the first entry (program name included): removes the flag, true if found.
bool find_flag(std::string_view name, arg_list& args);
// From the first entry: copies the entry behind the option to value and removes
// both. False, removing nothing, if the option is last or absent.
bool find_value(std::string_view name, std::string& value, arg_list& args);
// As find_flag and find_value, from the second entry, removing nothing.
bool has_flag(std::string_view name, const arg_list& args);
bool peek_value(std::string_view name, std::string& value, const arg_list& args);
// All entries joined by one blank; an entry holding a blank is wrapped in quote.
void join_args(std::string& text, const arg_list& args, char quote);

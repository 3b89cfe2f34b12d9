#include "driver/args.h"

#include "platform/text.h"

namespace {
std::size_t find_from(std::string_view name, const arg_list& args, std::size_t first) {
    for (std::size_t i = first; i < args.size(); ++i)
        if (same_text(args[i], name)) return i;
    return args.size();
}
}  // namespace

bool find_flag(std::string_view name, arg_list& args) {
    std::size_t i = find_from(name, args, 0);
    if (i == args.size()) return false;
    args.erase(args.begin() + static_cast<std::ptrdiff_t>(i));
    return true;
}

bool find_value(std::string_view name, std::string& value, arg_list& args) {
    std::size_t i = find_from(name, args, 0);
    if (i + 1 >= args.size()) return false;
    value = args[i + 1];
    args.erase(args.begin() + static_cast<std::ptrdiff_t>(i),
               args.begin() + static_cast<std::ptrdiff_t>(i + 2));
    return true;
}

bool has_flag(std::string_view name, const arg_list& args) { return find_from(name, args, 1) < args.size(); }

bool peek_value(std::string_view name, std::string& value, const arg_list& args) {
    std::size_t i = find_from(name, args, 1);
    if (i + 1 >= args.size()) return false;
    value = args[i + 1];
    return true;
}

void join_args(std::string& text, const arg_list& args, char quote) {
    text.clear();
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (i > 0) text += ' ';
        bool wrap = args[i].find(' ') != std::string::npos;
        if (wrap) text += quote;
        text += args[i];
        if (wrap) text += quote;
    }
}

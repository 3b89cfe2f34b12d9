#include "driver/messages.h"

#include <string>

#include "platform/os.h"

namespace {
constexpr std::size_t longest_message = 4096;

std::string with_value(std::string_view format, std::string_view value) {
    std::string message;
    std::size_t at = format.find("%s");
    if (at == std::string_view::npos) {
        message = format;
    } else {
        message.append(format.substr(0, at)).append(value).append(format.substr(at + 2));
    }
    return message;
}
}  // namespace

void write_error(std::string_view text) { os::write_stderr(text.data(), text.size()); }

void write_error(std::string_view format, std::string_view value) { write_error(with_value(format, value)); }

void print_error(std::string_view message) {
    std::string text(erase_sequence);
    if (message.size() <= longest_message) text += message;
    write_error(text);
}

void print_error(std::string_view format, std::string_view value) { print_error(with_value(format, value)); }

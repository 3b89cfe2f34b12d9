#include "platform/host_identity.h"

#include "platform/os.h"

namespace {
void append_replaced(std::string& out, std::string_view field, std::string_view separator,
                     std::string_view replacement) {
    if (separator.empty()) {
        out += field;
        return;
    }
    std::size_t at;
    while ((at = field.find(separator)) != std::string_view::npos) {
        out.append(field.substr(0, at)).append(replacement);
        field.remove_prefix(at + separator.size());
    }
    out += field;
}
}  // namespace

std::string get_host_name() {
    std::string name;
    return os::computer_name(name) && !name.empty() ? name : std::string("<unk>");
}

std::string get_module_path() {
    std::string path;
    return os::program_path(path) ? path : std::string();
}

void get_system_identity(system_identity& identity) {
    identity = system_identity{};
    os::get_system_identity(identity);
}

void write_system_fields(const system_identity& identity, std::string& out, std::string_view separator,
                         std::string_view replacement) {
    const std::string major_minor = std::to_string(identity.major) + "." + std::to_string(identity.minor);
    std::string build = std::to_string(identity.build);
    // The core library's build is cut behind its first digit: 10.0.22621 reads "10.0.2".
    if (identity.version_from_file) build.resize(1);
    append_replaced(out, identity.os_name.empty() ? "<unk>" : identity.os_name, separator, replacement);
    out += separator;
    append_replaced(out, major_minor + ".-", separator, replacement);
    out += separator;
    append_replaced(out, major_minor + "." + build, separator, replacement);
    out += separator;
    out += identity.is_64bit ? "64" : "32";
}

bool is_remote_program() {
    std::string path = get_module_path();
    return path.size() >= 2 && os::is_remote_path(path);
}

bool is_removable_program() {
    std::string path = get_module_path();
    return path.size() >= 2 && os::is_removable_path(path);
}

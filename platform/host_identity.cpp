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

// Of "10.0.22621" only "10.0.2": the last number cut behind its first digit.
std::string_view cut_build(std::string_view build) {
    std::size_t dot = build.rfind('.');
    if (dot == std::string_view::npos || dot + 1 >= build.size()) return build;
    return build.substr(0, dot + 2);
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
    append_replaced(out, identity.os_name, separator, replacement);
    out += separator;
    append_replaced(out, identity.os_version, separator, replacement);
    out += separator;
    std::string_view build = identity.os_build;
    append_replaced(out, identity.version_from_file ? cut_build(build) : build, separator, replacement);
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

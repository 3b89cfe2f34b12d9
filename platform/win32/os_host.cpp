// Facts of the machine for the run record, from the system's own calls.
#include "platform/win32/win32.h"

#include <vector>

#include "platform/os.h"

namespace os {

bool computer_name(std::string& name) {
    std::vector<wchar_t> buffer(4096);
    DWORD length = static_cast<DWORD>(buffer.size());
    if (!GetComputerNameW(buffer.data(), &length)) return false;
    name = win32::utf8(buffer.data(), length);
    return true;
}

bool program_path(std::string& path) {
    wchar_t buffer[1022];
    const DWORD length = GetModuleFileNameW(nullptr, buffer, 1022);
    if (length == 0) return false;
    path = win32::utf8(buffer, length);
    return true;
}

namespace {
// Whether the system's version is at least `value` in the one field `field`.
bool version_at_least(DWORD field, DWORD value) {
    OSVERSIONINFOEXA wanted{};
    wanted.dwOSVersionInfoSize = sizeof wanted;
    if (field == VER_MAJORVERSION) wanted.dwMajorVersion = value;
    if (field == VER_MINORVERSION) wanted.dwMinorVersion = value;
    const ULONGLONG condition = VerSetConditionMask(0, field, VER_GREATER_EQUAL);
    return VerifyVersionInfoA(&wanted, field, condition) != FALSE;
}

// The product version of the system's core library: major, minor, build.
void core_library_version(std::uint32_t& major, std::uint32_t& minor, std::uint32_t& build) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(L"kernel32", &ignored);
    if (size == 0) return;
    std::vector<unsigned char> block(size);
    if (!GetFileVersionInfoW(L"kernel32", 0, size, block.data())) return;
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(block.data(), L"\\", &value, &length) || !value || length < sizeof(VS_FIXEDFILEINFO))
        return;
    const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(value);
    major = HIWORD(fixed->dwProductVersionMS);
    minor = LOWORD(fixed->dwProductVersionMS);
    build = HIWORD(fixed->dwProductVersionLS);
}
}  // namespace

// A program without a manifest is told 6.2 by the version check from
// Windows 8 on; the real numbers then come from the core library's file.
// Nothing fills the product type or a service pack: the kind reads "-".
void get_system_identity(system_identity& identity) {
    SYSTEM_INFO machine{};
    GetNativeSystemInfo(&machine);
    identity.is_64bit = machine.dwProcessorType == 2200 || machine.dwProcessorType == 8664;
    if (version_at_least(VER_MAJORVERSION, 6) && version_at_least(VER_MINORVERSION, 2)) {
        identity.version_from_file = true;
        core_library_version(identity.major, identity.minor, identity.build);
    }
    identity.os_name = "Windows";
}

namespace {
UINT drive_type(char letter) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + 32);
    const char root[2] = {letter, '\0'};
    return GetDriveTypeA(root);
}
}  // namespace

// A program path without a drive letter is a network path.
bool is_remote_path(const std::string& path) {
    if (path.size() < 2) return false;
    return path[1] != ':' || drive_type(path[0]) == DRIVE_REMOTE;
}

bool is_removable_path(const std::string& path) {
    return path.size() >= 2 && drive_type(path[0]) == DRIVE_REMOVABLE;
}

}  // namespace os

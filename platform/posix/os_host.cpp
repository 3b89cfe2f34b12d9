// Machine facts behind the seam: host name, program path, kernel release,
// and the kind of file system the program was started from.
#include "platform/os.h"

#include <climits>
#include <cstdlib>
#include <sys/statfs.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "platform/text.h"

namespace os {

bool computer_name(std::string& name) {
    char buffer[HOST_NAME_MAX + 1] = {};
    if (::gethostname(buffer, sizeof buffer - 1) != 0) return false;
    name = buffer;
    return true;
}

bool program_path(std::string& path) {
    char buffer[PATH_MAX + 1];
    ssize_t n = ::readlink("/proc/self/exe", buffer, PATH_MAX);
    if (n <= 0) return false;
    path.assign(buffer, static_cast<std::size_t>(n));
    return true;
}

namespace {
// The decimal number of text at pos; pos moves behind its digits and one dot.
std::uint32_t next_number(std::string_view text, std::size_t& pos) {
    const scanned_number number = scan_number(text.substr(pos), 10, 0xffffffffu);
    pos += number.end;
    if (pos < text.size() && text[pos] == '.') ++pos;
    return static_cast<std::uint32_t>(number.magnitude);
}
}  // namespace

// The kernel's name and the three numbers of its release.
void get_system_identity(system_identity& identity) {
    utsname names{};
    const bool known = ::uname(&names) == 0;
    std::size_t pos = 0;
    const char* release = known ? names.release : "";
    identity.major = next_number(release, pos);
    identity.minor = next_number(release, pos);
    identity.build = next_number(release, pos);
    identity.os_name = known ? names.sysname : "";
    identity.version_from_file = false;
    identity.is_64bit = sizeof(void*) == 8;
}

bool is_remote_path(const std::string& path) {
    struct statfs facts {};
    if (::statfs(path.c_str(), &facts) != 0) return false;
    switch (static_cast<unsigned long>(facts.f_type)) {
    case 0x6969:      // NFS
    case 0xFF534D42:  // CIFS
    case 0xFE534D42:  // SMB2
    case 0x517B:      // SMB
    case 0x564c:      // NCP
    case 0x6B414653:  // AFS
    case 0x73757245:  // Coda
    case 0x01021997:  // 9P
        return true;
    default: return false;
    }
}

// Linux does not tell removable media by the file system; nothing counts as removable.
bool is_removable_path(const std::string&) { return false; }

}  // namespace os

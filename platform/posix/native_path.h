#pragma once
// The tool's path text (Windows form) as a POSIX path: every "\" becomes "/"
// and a leading "\\?\" or "\\.\" is dropped. The text seen in reports is unchanged.

#include <string>

namespace os {
std::string native_path(const std::string& path);
}

#pragma once
// What every file of the Windows backend shares: the system headers in the
// order Winsock wants them, and the tool's UTF-8 text as the wide text of
// the system's calls and back. Path text is handed over as it stands.

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#include <winsock2.h>

#include <cwchar>
#include <string>
#include <string_view>

#include "platform/text_convert.h"

namespace os::win32 {

inline std::wstring wide(std::string_view text) {
    const std::u16string converted = to_wide(text);
    return std::wstring(converted.begin(), converted.end());
}

inline std::wstring wide(std::u16string_view text) { return std::wstring(text.begin(), text.end()); }

inline std::string utf8(const wchar_t* text, std::size_t length) {
    return to_utf8(std::u16string(text, text + length));
}

inline std::string utf8(const wchar_t* text) { return utf8(text, std::wcslen(text)); }

}  // namespace os::win32

#pragma once
// Byte text (UTF-8) and wide text (UTF-16) into each other.

#include <string>
#include <string_view>

// UTF-8 to UTF-16. Empty when the text is empty or not valid as the tool
// reads UTF-8: a bad lead or continuation byte, a cut sequence, a code point
// in 0xD7FF..0xE000, 0xFFFF itself, or one above 0x10FFFF.
std::u16string to_wide(std::string_view text);

// The same conversion, appending to `out` what converted up to the first
// fault. False at a fault.
bool append_wide(std::string_view text, std::u16string& out);

// UTF-16 to UTF-8. A high surrogate without its low half ends the conversion
// there, without a sign; a lone low surrogate is encoded like any other unit.
std::string to_utf8(std::u16string_view text);

#pragma once
// Text and number helpers shared by the whole tool.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Letters A to Z to lower case, nothing else.
void to_lower(std::string& text);
void to_lower(std::u16string& text);

// Byte text: blanks, tabs, CRs and LFs off both ends. False if nothing remains.
bool trim_text(std::string& text);
// Wide text: blanks at both ends, then tabs at both ends, then CRs at the
// end, then LFs at the end. False if nothing remains.
bool trim_text(std::u16string& text);

// Reader of -timeout, -retry, -delay, -threads: "x" anywhere reads hex behind
// it, else "o" reads octal, else signed decimal saturating at 32 bits.
// False (value unchanged) for empty text or text that starts otherwise.
bool parse_number(std::string_view text, std::uint32_t& value);
// Reader of the other number options and date fields; value is 0 on false.
bool parse_number_c(std::string_view text, std::uint32_t& value);

// Cuts text at a single-character delimiter, appending the non-empty pieces
// (trimmed if asked) to list; emptied first unless keep_list. False when the
// text is empty.
bool split_text(std::string_view text, char delimiter, std::vector<std::string>& list, bool trim,
                bool keep_list);

#pragma once
// Path text rules. Paths are Windows path text held as UTF-8 bytes: the
// backslash is the separator of first choice and the slash is taken in its
// place. Nothing here touches the disk; the environment and the current
// directory are read where a rule asks for them.

#include <cstddef>
#include <string>
#include <string_view>

// The device prefix that "%vss%" stands for, numbered by the text behind it.
std::string_view vss_prefix();

// Replaces each %NAME% by the value of that environment variable; a name
// that is not set stays in the text, except "vss" (any case) when allow_vss.
// A text of more than 512 bytes is left alone, and growth past 512 ends the
// expansion.
std::string expand_path(std::string_view text, bool allow_vss);

// Cuts text at its last backslash, or at its last slash when it has no
// backslash; a separator at index 0 doesn't count and leaves dir ".".
// A name ".." becomes "." with ".." moved onto dir. False for empty text.
// For UTF-8 and for wide text alike: the separators are ASCII in both.
bool split_path(std::string_view text, std::string& dir, std::string& name);
bool split_path(std::u16string_view text, std::u16string& dir, std::u16string& name);

// The full form of a path relative to the current directory; a network path
// as it is; the empty text for a path rooted without a drive or for blanks.
std::string full_path(std::string_view path);
// The same rules against a given current directory.
std::string full_path(std::string_view path, std::string_view cwd);

// Drops slashes and backslashes from the end. True if something remains.
bool strip_separators(std::string& text);

void replace_char(std::string& text, char from, char to);
// Removes every c; the number removed.
std::size_t remove_char(std::string& text, char c);

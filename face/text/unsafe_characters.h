// Characters that a text from another source must not send to a terminal: control characters, and format
// characters, which are invisible but change the order of others (marks and overrides of the writing
// direction, line and paragraph separators, the byte order mark, the zero-width space). Texts are UTF-8.
#pragma once

#include <cstddef>
#include <string>

namespace scriptwells {

// The bytes of a format character at this place of the text; 0 for any other.
std::size_t FormatCharacterAt(const std::string& text, std::size_t at) noexcept;

// The columns of its escape, "\u202e".
constexpr std::size_t kFormatEscape = 6;

// The text with the escapes of all format characters.
std::string EscapeFormatCharacters(const std::string& text);

// Whether the text holds a control character (U+0000 to U+001F, U+007F to U+009F) or a format character.
bool HoldsUnsafeCharacters(const std::string& text);

// The text with escapes as in a table: "\x1b" for each byte of a control character and for each byte
// that is not UTF-8, "\u202e" for a format character. Tabs and line ends ("\n", "\r\n") are kept.
std::string EscapeForTerminal(const std::string& text);

// The same with "\n", "\r" and "\t" for tabs and line ends.
std::string EscapeInLine(const std::string& text);

// The same in one line: tabs and line ends become blanks, and blanks at the end are removed.
std::string OneLine(const std::string& text);

// The same value as the JSON text `json`, with "\u007f" for each unsafe character that JSON allows unescaped.
std::string EscapeForJson(const std::string& json);

}  // namespace scriptwells

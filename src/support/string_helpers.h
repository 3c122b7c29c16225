// Free functions over wide strings. Null and empty are alike unless told. Case mapping touches ASCII letters
// only, whatever locale the host has set: two processes must agree on what a name is. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

// Blank, tab, carriage return, line feed.
constexpr std::u16string_view kWhiteSpace = u" \t\r\n";

// First position of `pattern` in `text` (pattern first!); -1 when absent or when either is empty.
std::int64_t Find(const WideString& pattern, const WideString& text);
// atoi of the text (numbers.h). A lone surrogate anywhere cannot be narrowed and makes the result 0.
std::int32_t ToInt(const WideString& text);
std::int32_t NarrowedInt(std::u16string_view text);  // the same over borrowed units
// atol of the text, 32 bits wide.
std::int32_t ToLong(const WideString& text);
// Replaces each `old` up to the first null unit. Other holders of the same text do not see it.
void ReplaceChar(WideString& text, char16_t old, char16_t fresh);
// Null stays null.
WideString ToUpper(const WideString& text);
WideString ToLower(const WideString& text);
// At most `count` units from `position`. A position behind the end raises EQvException "Invalid position in
// function Copy"; the end itself gives an empty text.
WideString Copy(const WideString& text, std::size_t position, std::size_t count);
// A longer text is cut to `size` units, a shorter one stays, an empty one becomes `size` blanks.
void Resize(WideString& text, std::size_t size);
// Both up to their first null unit; null is like empty.
bool EqualIgnoreCase(const char16_t* a, const char16_t* b);

}  // namespace qv

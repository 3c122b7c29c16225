// Free functions over wide strings. Null and empty are equivalent unless stated otherwise. Case mapping
// changes ASCII letters only and ignores the locale, so that all processes agree on names. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

// Blank, tab, carriage return, line feed.
constexpr std::u16string_view kWhiteSpace = u" \t\r\n";

// First position of `pattern` in `text` (pattern first!); -1 if absent or if either is empty.
std::int64_t Find(const WideString& pattern, const WideString& text);
// atoi of the text (numbers.h). A lone surrogate makes the result 0.
std::int32_t ToInt(const WideString& text);
std::int32_t NarrowedInt(std::u16string_view text);  // the same over borrowed units
// atol of the text, 32 bits wide.
std::int32_t ToLong(const WideString& text);
// Replaces each `old` up to the first null unit. Does not affect other WideStrings that share the text.
void ReplaceChar(WideString& text, char16_t old, char16_t fresh);
// Null stays null.
WideString ToUpper(const WideString& text);
WideString ToLower(const WideString& text);
// At most `count` units from `position`. A position after the end throws EQvException "Invalid position in
// function Copy"; the end itself gives an empty text.
WideString Copy(const WideString& text, std::size_t position, std::size_t count);
// A longer text is cut to `size` units, a shorter one stays, an empty one becomes `size` blanks.
void Resize(WideString& text, std::size_t size);
// Compares up to the first null units; null equals empty.
bool EqualIgnoreCase(const char16_t* a, const char16_t* b);

}  // namespace qv

// Texts that must not stay in memory. A wide string that is marked is cleared when its last owner lets go of
// it. The mark is the text's: all copies of the WideString share it, also those made before. Texts made out
// of it (a part of it, its UTF-8 form) are texts of their own.
//
// The library marks connection strings, passwords and session ids that a host gives it or a server sends it.
// A host marks what it keeps itself.
#pragma once

#include "qvscriptwells/wide_string.h"

namespace qv {

// Of a raw string. Null is allowed and does nothing. Any thread that owns the string.
void MarkSecret(const char16_t* text) noexcept;
inline void MarkSecret(const WideString& text) noexcept {
  MarkSecret(text.data());
}

}  // namespace qv

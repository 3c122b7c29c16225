// SPDX-License-Identifier: Apache-2.0
// Texts that must not stay in memory. A marked wide string is cleared when its last owner releases it. The
// mark belongs to the text: all copies of the WideString share it, including earlier ones. Texts derived from
// it (a part, its UTF-8 form) are separate and not marked.
//
// The library marks connection strings, passwords and session ids that a host gives it or a server sends it.
// A host marks its own secrets itself.
#pragma once

#include "qvscriptwells/wide_string.h"

namespace qv {

// Of a raw string. Null is allowed and does nothing. Any thread that owns the string.
void MarkSecret(const char16_t* text) noexcept;
inline void MarkSecret(const WideString& text) noexcept {
  MarkSecret(text.data());
}

}  // namespace qv

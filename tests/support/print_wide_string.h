// Lets a failing assertion show a WideString as a text. Include it wherever WideStrings are compared.
#pragma once

#include <ostream>

#include "fixtures/shown_text.h"

namespace qv {

// "null", or the text in quotes.
inline void PrintTo(const WideString& text, std::ostream* out) {
  *out << (text.IsNull() ? "null" : '"' + Shown(text) + '"');
}

}  // namespace qv

// Lets a failing assertion show a WideString as a text. Include it wherever WideStrings are compared.
#pragma once

#include <ostream>
#include <string>

#include "qvscriptwells/wide_string.h"

namespace qv {

// "null", or the units in quotes with everything but printable ASCII as \uXXXX.
inline void PrintTo(const WideString& text, std::ostream* out) {
  if (text.IsNull()) {
    *out << "null";
    return;
  }
  static const char kDigits[] = "0123456789ABCDEF";
  std::string shown = "\"";
  for (const char16_t unit : text.view()) {
    if (unit >= 0x20 && unit < 0x7F) {
      shown += static_cast<char>(unit);
      continue;
    }
    shown += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) shown += kDigits[(unit >> shift) & 0xF];
  }
  *out << shown << '"';
}

}  // namespace qv

// Where a formater puts the text of one value without an allocation. One place serves many values in turn.
#pragma once

#include "format/text_conversions.h"
#include "qvscriptwells/wide_string.h"
#include "support/numbers.h"

namespace qv {

struct TextPlace {
  static_assert(kLongestPoint >= kLongestNumber);

  char16_t units[kLongestPoint];
  WideString text;  // one that does not fit, or that somebody else made
};

}  // namespace qv

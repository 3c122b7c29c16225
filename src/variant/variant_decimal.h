// Parses numbers in texts for VariantChangeType: blanks around; one sign before the number (with one blank
// after it) or after it, or parentheses for a negative number; commas after the first digit of the whole
// part, a decimal point, an exponent; or "&H" or "&O" and digits of that base.
#pragma once

#include <string_view>

#include "variant/variant_whole.h"

namespace qv {

// The text without blanks and line ends around.
std::u16string_view WithoutBlanks(std::u16string_view text) noexcept;

// Exact, then halves to the even neighbour. DISP_E_TYPEMISMATCH: not a number. DISP_E_OVERFLOW: beyond 64
// bits. Both may throw out of memory.
HRESULT WholeFromText(std::u16string_view text, Whole* whole);
// The nearest double; a number too small for any is 0. DISP_E_OVERFLOW: too large.
HRESULT RealFromText(std::u16string_view text, double* value);

}  // namespace qv

// Numbers in text, read like atoi, atol and atof in the C locale and written like a default text stream, but
// without undefined cases and independent of the process's locale. Bad text is never an error.
#pragma once

#include <cstdint>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

// Leading white space, a sign, digits; no digits give 0. Returns the low 32 bits of larger numbers.
std::int32_t ParseInt(std::u16string_view text);
// Accepts what atof does, including hexadecimal, "inf" and "nan". No number gives 0, too large a one an
// infinity.
double ParseDouble(std::u16string_view text);

WideString DecimalText(std::int64_t value);
// General notation with 6 significant digits: 3.14159, 1.23457e+06, 0, nan, -inf.
WideString GeneralText(double value);

}  // namespace qv

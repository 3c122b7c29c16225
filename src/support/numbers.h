// Numbers in text, as the C library's atoi, atol and atof read them in the C locale and as a default text
// stream writes them, without their undefined cases and without the process's locale. Bad text is never an
// error.
#pragma once

#include <cstdint>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

// Leading white space, a sign, digits as far as they go; no digits give 0. Beyond 32 bits the low 32 bits
// remain.
std::int32_t ParseInt(std::u16string_view text);
// What atof accepts, hexadecimal, "inf" and "nan" included; no number gives 0. Too large gives an infinity.
double ParseDouble(std::u16string_view text);

WideString DecimalText(std::int64_t value);
// General notation with 6 significant digits: 3.14159, 1.23457e+06, 0, nan, -inf.
WideString GeneralText(double value);

}  // namespace qv

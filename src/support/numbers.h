// Numbers in text, read like atoi, atol and atof in the C locale and written like a default text stream, but
// without undefined cases and independent of the process's locale. Bad text is never an error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

// Leading white space, a sign, digits; no digits give 0. Returns the low 32 bits of larger numbers.
std::int32_t ParseInt(std::u16string_view text);
// The number if the text is one to nine digits, with or without a minus sign, and nothing else.
std::optional<std::int32_t> PlainInt(std::u16string_view text) noexcept;
// Accepts what atof does, including hexadecimal, "inf" and "nan". No number gives 0, too large a one an
// infinity.
double ParseDouble(std::u16string_view text);

WideString DecimalText(std::int64_t value);
// General notation with 6 significant digits: 3.14159, 1.23457e+06, 0, nan, -inf.
WideString GeneralText(double value);

// The same texts written to `place`, which has room for kLongestNumber units.
constexpr std::size_t kLongestNumber = 32;
std::u16string_view DecimalText(std::int64_t value, char16_t* place) noexcept;
std::u16string_view GeneralText(double value, char16_t* place) noexcept;

}  // namespace qv

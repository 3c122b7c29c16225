// Numbers with a fixed number of decimal places: VT_CY and VT_DECIMAL.
#pragma once

#include <string>

#include "variant/variant_operand.h"

namespace qv {

// The exact number: digits, a point before a fraction, "-" before a negative number, no trailing zeros in the
// fraction. The operand is of the kind kScaled. May throw out of memory.
std::u16string ScaledText(const Operand& operand);

}  // namespace qv

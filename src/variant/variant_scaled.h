// Numbers with a fixed number of decimal places: VT_CY and VT_DECIMAL.
#pragma once

#include <string>

#include "variant/variant_operand.h"

namespace qv {

// The number exactly: digits, a point where it has a fraction, "-" in front of a negative one. No zeros at
// the end of the fraction. The operand is of the kind kScaled. May throw out of memory.
std::u16string ScaledText(const Operand& operand);

}  // namespace qv

// One type for the whole numbers of all tags.
#pragma once

#include <cstdint>

#include "variant/variant_operand.h"

namespace qv {

struct Whole {
  bool isNegative = false;  // never with magnitude 0
  std::uint64_t magnitude = 0;
  bool isBits = false;  // from hexadecimal or octal text: its bits may fill a signed tag
};

// The value of an operand that is a whole number.
Whole WholeOf(const Operand& operand) noexcept;
// Halves round to the even neighbour. DISP_E_OVERFLOW: beyond 64 bits, or not a number.
HRESULT WholeFromReal(double value, Whole* whole) noexcept;
double RealFromWhole(const Whole& whole) noexcept;

// The value under a tag of whole numbers. DISP_E_OVERFLOW: out of the tag's range.
HRESULT StoreWhole(const Whole& whole, const VariantTag& type, VariantData* data) noexcept;
// -1 under a signed tag, all bits set under an unsigned one.
void StoreTrue(const VariantTag& type, VariantData* data) noexcept;

}  // namespace qv

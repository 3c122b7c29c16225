// Texts of a Variant's value, for conversions to and from VT_BSTR.
#pragma once

#include <string_view>

#include "variant/variant_operand.h"

namespace qv {

// DISP_E_TYPEMISMATCH: VT_NULL, an object, a date out of range. May throw out of memory.
HRESULT TextOf(const Operand& operand, WideString* text);

// "True", "False", "#TRUE#", "#FALSE#", ignoring case. False: another text.
bool ReadBoolWord(std::u16string_view text, bool* value) noexcept;

}  // namespace qv

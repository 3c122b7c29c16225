// Texts of a Variant's value, for a change to VT_BSTR and from it.
#pragma once

#include <string_view>

#include "variant/variant_operand.h"

namespace qv {

// DISP_E_TYPEMISMATCH: VT_NULL, an object, a date out of range. May throw out of memory.
HRESULT TextOf(const Operand& operand, WideString* text);

// "True", "False", "#TRUE#", "#FALSE#", in any case. False: another word.
bool ReadBoolWord(std::u16string_view text, bool* value) noexcept;

}  // namespace qv

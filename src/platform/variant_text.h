// The text of a Variant's value, for a change to VT_BSTR.
#pragma once

#include "qvscriptwells/variant.h"

namespace qv {

// VT_EMPTY is empty, true is "-1"; floating numbers have 7 digits, doubles 15; a date reads "03/05/2024
// 10:15:30", without the half that is zero. DISP_E_TYPEMISMATCH: VT_NULL, an object, a date beyond the
// calendar. DISP_E_BADVARTYPE: a tag without text. May throw out of memory.
HRESULT TextOfVariant(const Variant& source, WideString* text);

}  // namespace qv

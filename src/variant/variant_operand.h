// The source value of a conversion: a Variant's value, after following its pointers.
#pragma once

#include <cstddef>
#include <string_view>

#include "qvscriptwells/variant.h"

namespace qv {

// Tags of one kind are converted in the same way. The order is that of the table of conversions.
enum class ValueKind { kEmpty, kNull, kWhole, kReal, kBool, kDate, kText, kObject, kScaled };

struct VariantTag {
  VARTYPE tag;
  ValueKind kind;
  std::size_t size;  // of the value in bytes; 0 for none
  bool isSigned;     // of whole numbers
};

// Null for a tag without conversions, and for every tag with VT_BYREF.
const VariantTag* FindVariantTag(VARTYPE tag) noexcept;

// Borrows from the Variant that it was read from.
struct Operand {
  const VariantTag* type = nullptr;
  VariantData data;
  DECIMAL decimal;         // of a VT_DECIMAL
  bool isForeign = false;  // the value is outside a Variant, where its owner may change it

  // The text; empty for a null one.
  std::u16string_view Text() const noexcept { return {data.bstrVal, StringLength(data.bstrVal)}; }
};

// DISP_E_BADVARTYPE for an unknown tag; E_INVALIDARG for a null pointer, too many in a row or a bad DECIMAL.
HRESULT ReadOperand(const Variant& source, Operand* operand) noexcept;

// A Variant that owns the same value. Copies a foreign text, shares any other. May throw out of memory.
Variant OwnedCopy(const Operand& operand);

}  // namespace qv

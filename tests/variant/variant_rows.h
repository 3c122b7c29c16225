// Tables of type changes: short makers for values of every tag, and the checks of a row.
#pragma once

#include <string_view>
#include <vector>

#include "fixtures/shown_value.h"
#include "qvscriptwells/variant.h"

namespace qv {

Variant Raw(VARTYPE tag, std::int64_t bytes);
Variant I1(std::int8_t value);
Variant I2(std::int16_t value);
Variant I4(std::int32_t value);
Variant Int(std::int32_t value);
Variant I8(std::int64_t value);
Variant UI1(std::uint8_t value);
Variant UI2(std::uint16_t value);
Variant UI4(std::uint32_t value);
Variant UInt(std::uint32_t value);
Variant UI8(std::uint64_t value);
Variant R4(float value);
Variant R8(double value);
Variant Date(double value);
Variant Bool(bool value);
Variant Text(std::u16string_view text);

// Points at the value of `target`, which has to outlive the result.
Variant PointerTo(const Variant& target);
// Points at `target` itself.
Variant PointerToVariant(const Variant& target);

struct ChangedRow {
  Variant source;
  VARTYPE tag;
  Variant result;
};

struct RefusedRow {
  Variant source;
  VARTYPE tag;
  HRESULT code;
};

// The same tag and the same bytes, texts by their units.
bool IsSame(const Variant& a, const Variant& b);

// Each row is tried four times: into another Variant, onto the source itself, and from pointers to the value
// and to the Variant.
void ExpectChanged(const std::vector<ChangedRow>& rows);
// As above; the destination has to stay as it was.
void ExpectRefused(const std::vector<RefusedRow>& rows);

}  // namespace qv

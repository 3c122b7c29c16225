#include "variant/variant_rows.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

bool HasPointerForm(const Variant& value) {
  return value.Tag() != VT_EMPTY && value.Tag() != VT_NULL && (value.Tag() & VT_BYREF) == 0;
}

void ExpectChange(const ChangedRow& row, const Variant& source, Variant* destination, const char* way) {
  EXPECT_EQ(VariantChangeType(destination, source, row.tag), S_OK)
      << ShownValue(row.source) << " to " << row.tag << ", " << way;
  EXPECT_TRUE(IsSame(*destination, row.result))
      << ShownValue(row.source) << " to " << row.tag << ", " << way << ": " << ShownValue(*destination)
      << " instead of " << ShownValue(row.result);
}

void ExpectRefusal(const RefusedRow& row, const Variant& source, Variant* destination, const char* way) {
  const Variant before = *destination;
  EXPECT_EQ(VariantChangeType(destination, source, row.tag), row.code)
      << ShownValue(row.source) << " to " << row.tag << ", " << way;
  EXPECT_TRUE(IsSame(*destination, before))
      << ShownValue(row.source) << " to " << row.tag << ", " << way << " left " << ShownValue(*destination);
}

}  // namespace

Variant Raw(VARTYPE tag, std::int64_t bytes) {
  VariantData data;
  data.llVal = bytes;
  return Variant::FromRaw(tag, data);
}

Variant I1(std::int8_t value) {
  return Variant::FromByte(value);
}

Variant I2(std::int16_t value) {
  return Variant::FromShort(value);
}

Variant I4(std::int32_t value) {
  VariantData data;
  data.lVal = value;
  return Variant::FromRaw(VT_I4, data);
}

Variant Int(std::int32_t value) {
  return Variant::FromInt(value);
}

Variant I8(std::int64_t value) {
  return Variant::FromLong(value);
}

Variant UI1(std::uint8_t value) {
  VariantData data;
  data.bVal = value;
  return Variant::FromRaw(VT_UI1, data);
}

Variant UI2(std::uint16_t value) {
  VariantData data;
  data.uiVal = value;
  return Variant::FromRaw(VT_UI2, data);
}

Variant UI4(std::uint32_t value) {
  VariantData data;
  data.ulVal = value;
  return Variant::FromRaw(VT_UI4, data);
}

Variant UInt(std::uint32_t value) {
  VariantData data;
  data.uintVal = value;
  return Variant::FromRaw(VT_UINT, data);
}

Variant UI8(std::uint64_t value) {
  VariantData data;
  data.ullVal = value;
  return Variant::FromRaw(VT_UI8, data);
}

Variant R4(float value) {
  return Variant::FromFloat(value);
}

Variant R8(double value) {
  return Variant::FromDouble(value);
}

Variant Date(double value) {
  return Variant::FromDate(value);
}

Variant Bool(bool value) {
  return Variant::FromBool(value);
}

Variant Text(std::u16string_view text) {
  return Variant::FromString(WideString(text));
}

Variant PointerTo(const Variant& target) {
  VariantData data;
  data.byref = const_cast<VariantData*>(&target.Data());
  if (target.Tag() == VT_DECIMAL) data.byref = const_cast<Variant*>(&target);  // which it fills
  return Variant::FromRaw(static_cast<VARTYPE>(VT_BYREF | target.Tag()), data);
}

Variant PointerToVariant(const Variant& target) {
  VariantData data;
  data.byref = const_cast<Variant*>(&target);
  return Variant::FromRaw(static_cast<VARTYPE>(VT_BYREF | VT_VARIANT), data);
}

bool IsSame(const Variant& a, const Variant& b) {
  if (a.Tag() != b.Tag()) return false;
  if (a.Tag() != VT_BSTR) return a.Data().llVal == b.Data().llVal;
  return a.Text().IsNull() == b.Text().IsNull() && a.Text() == b.Text();
}

void ExpectChanged(const std::vector<ChangedRow>& rows) {
  for (const ChangedRow& row : rows) {
    Variant destination = Variant::FromString(u"old");
    ExpectChange(row, row.source, &destination, "into another");
    Variant itself = row.source;
    ExpectChange(row, itself, &itself, "onto itself");
    Variant pointedAt = row.source;
    ExpectChange(row, PointerToVariant(pointedAt), &pointedAt, "by a pointer to the destination");
    if (!HasPointerForm(row.source)) continue;
    Variant value = row.source;
    ExpectChange(row, PointerTo(value), &value, "by a pointer to the destination's value");
  }
}

void ExpectRefused(const std::vector<RefusedRow>& rows) {
  for (const RefusedRow& row : rows) {
    Variant destination = Variant::FromString(u"old");
    ExpectRefusal(row, row.source, &destination, "into another");
    Variant itself = row.source;
    ExpectRefusal(row, itself, &itself, "onto itself");
    Variant pointedAt = row.source;
    ExpectRefusal(row, PointerToVariant(pointedAt), &pointedAt, "by a pointer to the destination");
    if (!HasPointerForm(row.source)) continue;
    Variant value = row.source;
    ExpectRefusal(row, PointerTo(value), &value, "by a pointer to the destination's value");
  }
}

}  // namespace qv

#include "qvscriptwells/variant.h"

#include <utility>

#include "qvscriptwells/com_error.h"
#include "text/string_block.h"

namespace qv {
namespace {

// Tags that a Variant can be copied under: 0 to 11, 13, 14 and 16 to 23 of the published list, and pointers
// to them.
bool IsKnownTag(VARTYPE tag) noexcept {
  const VARTYPE base = tag & static_cast<VARTYPE>(~VT_BYREF);
  if (base == VT_VARIANT) return (tag & VT_BYREF) != 0;
  return base <= 23 && base != 15;
}

bool HoldsObject(VARTYPE tag) noexcept {
  return tag == VT_UNKNOWN || tag == VT_DISPATCH;
}

// By value, since AddRef may call back and change the source Variant.
VariantData SharedData(VARTYPE tag, VariantData data) {
  if (!IsKnownTag(tag)) _com_raise_error(DISP_E_BADVARTYPE);
  if (tag == VT_BSTR) ShareString(data.bstrVal);
  if (HoldsObject(tag) && data.punkVal != nullptr) data.punkVal->AddRef();
  return data;
}

}  // namespace

// The data last: sharing it may call an object, which may change the source.
Variant::Variant(const Variant& other)
    : tag_(other.tag_),
      scale_(other.scale_),
      sign_(other.sign_),
      high_(other.high_),
      data_(SharedData(other.tag_, other.data_)) {}

Variant& Variant::operator=(const Variant& other) {
  Variant copy(other);
  Swap(copy);
  return *this;
}

void Variant::Clear() noexcept {
  scale_ = sign_ = 0;
  high_ = 0;
  const VARTYPE tag = std::exchange(tag_, VT_EMPTY);
  const VariantData data = std::exchange(data_, VariantData{});
  if (tag == VT_BSTR) FreeString(data.bstrVal);
  if (HoldsObject(tag) && data.punkVal != nullptr) data.punkVal->Release();
}

WideString Variant::Text() const noexcept {
  return tag_ == VT_BSTR ? WideString::Attach(ShareString(data_.bstrVal)) : WideString();
}

IUnknown* Variant::Object() const noexcept {
  return HoldsObject(tag_) ? data_.punkVal : nullptr;
}

Variant Variant::Null() noexcept {
  return {VT_NULL, VariantData{}};
}

Variant Variant::FromByte(std::int8_t value) noexcept {
  VariantData data;
  data.cVal = value;
  return {VT_I1, data};
}

Variant Variant::FromShort(std::int16_t value) noexcept {
  VariantData data;
  data.iVal = value;
  return {VT_I2, data};
}

Variant Variant::FromInt(std::int32_t value) noexcept {
  VariantData data;
  data.intVal = value;
  return {VT_INT, data};
}

Variant Variant::FromLong(std::int64_t value) noexcept {
  VariantData data;
  data.llVal = value;
  return {VT_I8, data};
}

Variant Variant::FromBool(bool value) noexcept {
  VariantData data;
  data.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return {VT_BOOL, data};
}

Variant Variant::FromFloat(float value) noexcept {
  VariantData data;
  data.fltVal = value;
  return {VT_R4, data};
}

Variant Variant::FromDouble(double value) noexcept {
  VariantData data;
  data.dblVal = value;
  return {VT_R8, data};
}

Variant Variant::FromDate(double serialDate) noexcept {
  VariantData data;
  data.date = serialDate;
  return {VT_DATE, data};
}

Variant Variant::FromString(const WideString& text) noexcept {
  VariantData data;
  data.bstrVal = ShareString(const_cast<char16_t*>(text.data()));
  return {VT_BSTR, data};
}

Variant Variant::FromObject(IUnknown* object) noexcept {
  VariantData data;
  data.punkVal = object;
  if (object != nullptr) object->AddRef();
  return {VT_UNKNOWN, data};
}

Variant Variant::FromDecimal(const DECIMAL& value) noexcept {
  Variant result;
  result.tag_ = VT_DECIMAL;
  result.scale_ = value.scale;
  result.sign_ = value.sign;
  result.high_ = value.Hi32;
  result.data_.ullVal = value.Lo64;
  return result;
}

DECIMAL Variant::Decimal() const noexcept {
  if (tag_ != VT_DECIMAL) return {};
  return {0, scale_, sign_, high_, data_.ullVal};
}

Variant Variant::FromRaw(VARTYPE tag, const VariantData& data) noexcept {
  return {tag, data};
}

}  // namespace qv

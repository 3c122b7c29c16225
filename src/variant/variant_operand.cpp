#include "variant/variant_operand.h"

#include <cstring>

#include "text/string_block.h"

namespace qv {
namespace {

constexpr VARTYPE kPointerToVariant = VT_BYREF | VT_VARIANT;
constexpr int kMostPointers = 8;
constexpr int kMostDecimalScale = 28;

// For an object, stored as a pointer.
constexpr std::size_t kPointerSize = sizeof(void*);

constexpr VariantTag kTags[] = {
    {VT_EMPTY, ValueKind::kEmpty, 0, false},
    {VT_NULL, ValueKind::kNull, 0, false},
    {VT_I1, ValueKind::kWhole, 1, true},
    {VT_I2, ValueKind::kWhole, 2, true},
    {VT_I4, ValueKind::kWhole, 4, true},
    {VT_INT, ValueKind::kWhole, 4, true},
    {VT_I8, ValueKind::kWhole, 8, true},
    {VT_UI1, ValueKind::kWhole, 1, false},
    {VT_UI2, ValueKind::kWhole, 2, false},
    {VT_UI4, ValueKind::kWhole, 4, false},
    {VT_UINT, ValueKind::kWhole, 4, false},
    {VT_UI8, ValueKind::kWhole, 8, false},
    {VT_R4, ValueKind::kReal, sizeof(float), false},
    {VT_R8, ValueKind::kReal, sizeof(double), false},
    {VT_BOOL, ValueKind::kBool, sizeof(VARIANT_BOOL), false},
    {VT_DATE, ValueKind::kDate, sizeof(double), false},
    {VT_BSTR, ValueKind::kText, sizeof(BStr), false},
    {VT_UNKNOWN, ValueKind::kObject, kPointerSize, false},
    {VT_DISPATCH, ValueKind::kObject, kPointerSize, false},
    {VT_CY, ValueKind::kScaled, 8, true},
    {VT_DECIMAL, ValueKind::kScaled, sizeof(DECIMAL), true},
};

HRESULT TakeDecimal(const DECIMAL& decimal, Operand* operand) noexcept {
  operand->decimal = decimal;
  const bool isNumber =
      decimal.scale <= kMostDecimalScale && (decimal.sign == 0 || decimal.sign == DECIMAL_NEG);
  return isNumber ? S_OK : E_INVALIDARG;
}

HRESULT ReadPointer(const Variant& source, Operand* operand) noexcept {
  operand->type = FindVariantTag(source.Tag() & static_cast<VARTYPE>(~VT_BYREF));
  if (operand->type == nullptr || operand->type->size == 0) return DISP_E_BADVARTYPE;
  const void* const value = source.Data().byref;
  if (value == nullptr) return E_INVALIDARG;
  operand->isForeign = true;
  operand->data = VariantData{};
  if (operand->type->tag == VT_DECIMAL) {
    DECIMAL decimal;
    std::memcpy(&decimal, value, sizeof decimal);
    return TakeDecimal(decimal, operand);
  }
  std::memcpy(&operand->data, value, operand->type->size);
  return S_OK;
}

HRESULT ReadValue(const Variant& source, Operand* operand) noexcept {
  if ((source.Tag() & VT_BYREF) != 0) return ReadPointer(source, operand);
  operand->type = FindVariantTag(source.Tag());
  if (operand->type == nullptr) return DISP_E_BADVARTYPE;
  operand->data = source.Data();
  operand->isForeign = false;
  return source.Tag() == VT_DECIMAL ? TakeDecimal(source.Decimal(), operand) : S_OK;
}

}  // namespace

const VariantTag* FindVariantTag(VARTYPE tag) noexcept {
  for (const VariantTag& row : kTags)
    if (row.tag == tag) return &row;
  return nullptr;
}

HRESULT ReadOperand(const Variant& source, Operand* operand) noexcept {
  const Variant* at = &source;
  for (int pointers = 0; at->Tag() == kPointerToVariant; ++pointers) {
    at = static_cast<const Variant*>(at->Data().byref);
    if (at == nullptr || pointers == kMostPointers) return E_INVALIDARG;
  }
  return ReadValue(*at, operand);
}

Variant OwnedCopy(const Operand& operand) {
  if (operand.type->kind != ValueKind::kText) {
    if (operand.type->kind == ValueKind::kObject && operand.data.punkVal != nullptr)
      operand.data.punkVal->AddRef();
    return Variant::FromRaw(operand.type->tag, operand.data);
  }
  char16_t* const text = operand.data.bstrVal;
  if (operand.isForeign && text != nullptr) return Variant::FromString(WideString(operand.Text()));
  VariantData data;
  data.bstrVal = ShareString(text);
  return Variant::FromRaw(VT_BSTR, data);
}

}  // namespace qv

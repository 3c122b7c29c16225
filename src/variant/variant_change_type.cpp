#include <cmath>
#include <cstddef>

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/variant.h"
#include "variant/variant_date.h"
#include "variant/variant_decimal.h"
#include "variant/variant_operand.h"
#include "variant/variant_scaled.h"
#include "variant/variant_text.h"
#include "variant/variant_whole.h"

namespace qv {
namespace {

// The conversions, one per kind of target. Each sets the value of a Variant under `target`, or leaves it
// unchanged.
using Conversion = HRESULT (*)(const Operand& source, const VariantTag& target, VariantData* data);

HRESULT RealOf(const Operand& source, double* value) {
  switch (source.type->kind) {
    case ValueKind::kEmpty:
      *value = 0;
      return S_OK;
    case ValueKind::kWhole:
      *value = RealFromWhole(WholeOf(source));
      return S_OK;
    case ValueKind::kReal:
      *value = source.type->tag == VT_R4 ? static_cast<double>(source.data.fltVal) : source.data.dblVal;
      return S_OK;
    case ValueKind::kBool:
      *value = source.data.boolVal != VARIANT_FALSE ? -1 : 0;
      return S_OK;
    case ValueKind::kDate:
      *value = source.data.date;
      return S_OK;
    case ValueKind::kText:
      return RealFromText(source.Text(), value);
    case ValueKind::kScaled:
      return RealFromText(ScaledText(source), value);
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

HRESULT ToNothing(const Operand&, const VariantTag&, VariantData*) {
  return DISP_E_TYPEMISMATCH;
}

HRESULT RoundedOf(const Operand& source, Whole* whole) {
  if (source.type->kind == ValueKind::kWhole) {
    *whole = WholeOf(source);
    return S_OK;
  }
  if (source.type->kind == ValueKind::kText) return WholeFromText(source.Text(), whole);
  if (source.type->kind == ValueKind::kScaled) return WholeFromText(ScaledText(source), whole);
  double value = 0;
  const HRESULT code = RealOf(source, &value);
  return Failed(code) ? code : WholeFromReal(value, whole);
}

HRESULT ToWhole(const Operand& source, const VariantTag& target, VariantData* data) {
  if (source.type->kind == ValueKind::kBool && source.data.boolVal != VARIANT_FALSE) {
    StoreTrue(target, data);
    return S_OK;
  }
  Whole whole;
  const HRESULT code = RoundedOf(source, &whole);
  return Failed(code) ? code : StoreWhole(whole, target, data);
}

HRESULT NarrowToFloat(double value, VariantData* data) noexcept {
  // Halfway between the greatest float and the next power of two; from there on a cast is undefined.
  constexpr double kBeyondFloats = 340282356779733661637539395458142568448.0;
  if (std::fabs(value) >= kBeyondFloats) return DISP_E_OVERFLOW;
  data->fltVal = static_cast<float>(value);
  return S_OK;
}

HRESULT ToReal(const Operand& source, const VariantTag& target, VariantData* data) {
  double value = 0;
  const HRESULT code = RealOf(source, &value);
  if (Failed(code)) return code;
  if (target.tag == VT_R4) return NarrowToFloat(value, data);
  data->dblVal = value;
  return S_OK;
}

HRESULT ToBool(const Operand& source, const VariantTag&, VariantData* data) {
  bool value = false;
  if (source.type->kind != ValueKind::kText || !ReadBoolWord(source.Text(), &value)) {
    double number = 0;
    const HRESULT code = RealOf(source, &number);
    if (Failed(code)) return code;
    value = number != 0;
  }
  data->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

HRESULT ToDate(const Operand& source, const VariantTag&, VariantData* data) {
  double value = 0;
  if (source.type->kind == ValueKind::kText) {
    if (!ReadDate(source.Text(), &value)) return DISP_E_TYPEMISMATCH;
  } else {
    const HRESULT code = RealOf(source, &value);
    if (Failed(code)) return code;
    if (!IsDate(value)) return DISP_E_OVERFLOW;
  }
  data->date = value;
  return S_OK;
}

HRESULT ToText(const Operand& source, const VariantTag&, VariantData* data) {
  WideString text;
  const HRESULT code = TextOf(source, &text);
  if (Succeeded(code)) data->bstrVal = text.Detach();
  return code;
}

HRESULT ToObject(const Operand& source, const VariantTag& target, VariantData* data) {
  if (source.type->kind != ValueKind::kObject) return DISP_E_TYPEMISMATCH;
  IUnknown* const object = source.data.punkVal;
  if (object == nullptr) return S_OK;
  const bool toDispatch = target.tag == VT_DISPATCH;
  void* answer = nullptr;
  const HRESULT code = object->QueryInterface(toDispatch ? IDispatch::kIid : IUnknown::kIid, &answer);
  if (Failed(code) || answer == nullptr) return DISP_E_TYPEMISMATCH;
  data->punkVal = toDispatch ? static_cast<IDispatch*>(answer) : static_cast<IUnknown*>(answer);
  return S_OK;
}

// In the order of ValueKind; kScaled is never a target.
constexpr Conversion kConversions[] = {ToNothing, ToNothing, ToWhole, ToReal,
                                       ToBool,    ToDate,    ToText,  ToObject};

bool IsPlain(const VariantTag& type) noexcept {
  return type.kind != ValueKind::kEmpty && type.kind != ValueKind::kNull && type.kind != ValueKind::kObject;
}

// The default property, the value of an object where a plain value is needed. Holds the object, since it may
// call back.
HRESULT DefaultProperty(IUnknown* object, Variant* value) {
  const IUnknownPtr kept(object);
  void* answer = nullptr;
  if (object == nullptr || Failed(object->QueryInterface(IDispatch::kIid, &answer)) || answer == nullptr)
    return DISP_E_TYPEMISMATCH;
  const IDispatchPtr asked(static_cast<IDispatch*>(answer), false);
  const DISPPARAMS none;
  const HRESULT code =
      asked->Invoke(DISPID_VALUE, Guid{}, 0, DISPATCH_PROPERTYGET, &none, value, nullptr, nullptr);
  return Failed(code) ? DISP_E_TYPEMISMATCH : S_OK;
}

enum class Objects { kAsked, kRefused };

HRESULT ChangeType(Variant* destination, const Variant& source, VARTYPE tag, Objects objects) {
  const VariantTag* const target = FindVariantTag(tag);
  if (target == nullptr || target->kind == ValueKind::kScaled) return DISP_E_BADVARTYPE;
  Operand operand;
  HRESULT code = ReadOperand(source, &operand);
  if (Failed(code)) return code;
  if (operand.type == target) {
    *destination = OwnedCopy(operand);
    return S_OK;
  }
  if (objects == Objects::kAsked && operand.type->kind == ValueKind::kObject && IsPlain(*target)) {
    Variant value;
    code = DefaultProperty(operand.data.punkVal, &value);
    return Failed(code) ? code : ChangeType(destination, value, tag, Objects::kRefused);
  }
  VariantData data;
  code = kConversions[static_cast<std::size_t>(target->kind)](operand, *target, &data);
  if (Succeeded(code)) *destination = Variant::FromRaw(tag, data);
  return code;
}

HRESULT GuardedChange(Variant* destination, const Variant& source, VARTYPE tag) noexcept {
  try {
    return ChangeType(destination, source, tag, Objects::kAsked);
  } catch (const _com_error& error) {
    return error.Error();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace

HRESULT VariantChangeType(Variant* destination, const Variant& source, VARTYPE tag) noexcept {
  if (destination == nullptr) return E_INVALIDARG;
  const HRESULT code = GuardedChange(destination, source, tag);
  if (Failed(code)) ClearErrorInfo();  // drops the message of an earlier failure
  return code;
}

}  // namespace qv

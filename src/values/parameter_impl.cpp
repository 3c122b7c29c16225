#include "values/parameter_impl.h"

#include <utility>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/objects.h"

namespace qv {
namespace {

struct TypeName {
  VARTYPE tag;
  const char16_t* name;
};

constexpr TypeName kTypeNames[] = {
    {VT_EMPTY, u"no type"}, {VT_NULL, u"no type"}, {VT_I2, u"short"},    {VT_I4, u"int"},
    {VT_R4, u"float"},      {VT_R8, u"double"},    {VT_BSTR, u"string"}, {VT_BOOL, u"boolean"},
    {VT_I1, u"byte"},       {VT_I8, u"long"},      {VT_INT, u"int"},
};

struct ObjectType {
  Guid iid;
  const char16_t* name;
};

constexpr ObjectType kObjectTypes[] = {{IID_IAttachedFile, u"AttachedFile"}, {IID_IDuration, u"duration"}};

// The whole part of a value beyond 32 bits cannot be tested; such a value is a date and time.
WideString DateTypeName(double serialDate) {
  if (!(serialDate > -2147483649.0 && serialDate < 2147483648.0)) return u"datetime";
  const auto days = static_cast<std::int32_t>(serialDate);
  if (days == 0) return u"time";
  return serialDate - days == 0.0 ? u"date" : u"datetime";
}

// A copy, since querying an object may call back and replace the value.
WideString ObjectTypeName(IUnknown* object) {
  const IUnknownPtr kept(object);
  for (const ObjectType& type : kObjectTypes) {
    const IUnknownPtr view = As<IUnknown>(object, type.iid);
    if (view != nullptr) return type.name;
  }
  return {};
}

}  // namespace

void ParameterImpl::SetValues(WideString key, const Variant& value) {
  key_ = std::move(key);
  Variant copy(value);
  if (copy.Tag() == VT_DISPATCH) copy = Variant::FromObject(copy.Object());
  value_ = std::move(copy);
}

WideString ParameterImpl::get_ParamKey() {
  return key_;
}

Variant ParameterImpl::get_ParamValue() {
  return value_;
}

WideString ParameterImpl::get_ParamTypeAsString() {
  if (value_.Tag() == VT_DATE) return DateTypeName(value_.Data().date);
  if (value_.Tag() == VT_UNKNOWN) return ObjectTypeName(value_.Object());
  for (const TypeName& type : kTypeNames)
    if (type.tag == value_.Tag()) return type.name;
  return {};
}

}  // namespace qv

// Parameters and their list by name and id.
#include <iterator>

#include "automation/dispatch_tables.h"
#include "qvscriptwells/objects.h"

namespace qv {
namespace {

IParameter* One(IDispatch* self) {
  return static_cast<IParameter*>(self);
}
IParameters* List(IDispatch* self) {
  return static_cast<IParameters*>(self);
}

HRESULT SetValues(IDispatch* self, MemberCall& call) {
  return One(self)->SetValues(call.Text(0), call.Value(1));
}
HRESULT GetParamKey(IDispatch* self, MemberCall& call) {
  return One(self)->get_ParamKey(&call.text);
}
HRESULT GetParamValue(IDispatch* self, MemberCall& call) {
  return One(self)->get_ParamValue(&call.value);
}
HRESULT GetParamTypeAsString(IDispatch* self, MemberCall& call) {
  return One(self)->get_ParamTypeAsString(&call.text);
}

HRESULT Add(IDispatch* self, MemberCall& call) {
  IParameter* added = nullptr;
  const HRESULT code = List(self)->Add(call.Text(0), call.Value(1), &added);
  call.object = added;
  return code;
}
HRESULT Remove(IDispatch* self, MemberCall& call) {
  return List(self)->Remove(call.Short(0));
}
HRESULT Find(IDispatch* self, MemberCall& call) {
  IParameter* found = nullptr;
  const HRESULT code = List(self)->Find(call.Short(0), &found);
  call.object = found;
  return code;
}
HRESULT Size(IDispatch* self, MemberCall& call) {
  return List(self)->Size(&call.shortValue);
}
HRESULT Clear(IDispatch* self, MemberCall&) {
  return List(self)->Clear();
}

constexpr NameRow kOneNames[] = {
    {u"key", 0},
    {u"value", 1},
    {u"SetValues", 1},
    {u"ParamKey", 2},
    {u"retVal", 0},
    {u"get_ParamKey", 2},
    {u"ParamValue", 3},
    {u"get_ParamValue", 3},
    {u"ParamTypeAsString", 4},
    {u"get_ParamTypeAsString", 4},
};

constexpr MemberRow kOneMembers[] = {
    {1,
     u"SetValues",
     CalledBy::kAnyFlag,
     VT_EMPTY,
     &SetValues,
     2,
     {{VT_BSTR, u"key"}, {VT_VARIANT, u"value"}}},
    {2, u"get_ParamKey", CalledBy::kAnyFlag, VT_BSTR, &GetParamKey},
    {3, u"get_ParamValue", CalledBy::kAnyFlag, VT_VARIANT, &GetParamValue},
    {4, u"get_ParamTypeAsString", CalledBy::kAnyFlag, VT_BSTR, &GetParamTypeAsString},
};

constexpr NameRow kListNames[] = {{u"Add", 1}, {u"Remove", 2}, {u"Find", 3}, {u"Size", 4}, {u"Clear", 5}};

constexpr MemberRow kListMembers[] = {
    {1,
     u"Add",
     CalledBy::kAnyFlag,
     VT_DISPATCH,
     &Add,
     2,
     {{VT_BSTR, u"key"}, {VT_VARIANT, u"value"}},
     &IParameter::kIid},
    {2, u"Remove", CalledBy::kAnyFlag, VT_EMPTY, &Remove, 1, {{VT_I2, u"index"}}},
    {3, u"Find", CalledBy::kAnyFlag, VT_DISPATCH, &Find, 1, {{VT_I2, u"index"}}, &IParameter::kIid},
    {4, u"Size", CalledBy::kAnyFlag, VT_I2, &Size},
    {5, u"Clear", CalledBy::kAnyFlag, VT_EMPTY, &Clear},
};

}  // namespace

const DispatchTable kParameterTable = {
    u"IParameter", &IParameter::kIid,    2,           NamedArgumentUse::kHonoured,
    kOneNames,     std::size(kOneNames), kOneMembers, std::size(kOneMembers)};

const DispatchTable kParametersTable = {
    u"IParameters", &IParameters::kIid,     3, NamedArgumentUse::kRefused, kListNames, std::size(kListNames),
    kListMembers,   std::size(kListMembers)};

}  // namespace qv

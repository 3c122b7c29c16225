#include "dispatch/dispatch_table.h"

#include <utility>

#include "qvscriptwells/error_info.h"
#include "support/string_helpers.h"

namespace qv {
namespace {

const NameRow* FindName(const DispatchTable& table, const char16_t* name) {
  if (name == nullptr) return nullptr;
  for (const NameRow* row = table.names; row != table.names + table.nameCount; ++row)
    if (EqualIgnoreCase(row->name.data(), name)) return row;
  return nullptr;
}

}  // namespace

HRESULT FindIds(const DispatchTable& table, const char16_t* const* names, std::uint32_t count,
                DISPID* ids) noexcept {
  ClearErrorInfo();
  if (count == 0) return S_OK;
  if (names == nullptr || ids == nullptr) return E_POINTER;
  for (std::uint32_t i = 0; i < count; ++i) {
    const NameRow* const row = FindName(table, names[i]);
    if (row == nullptr) return DISP_E_UNKNOWNNAME;
    ids[i] = row->id;
  }
  return S_OK;
}

// One call of Invoke, from the host's arguments to the host's result.
class Invocation {
 public:
  Invocation(const DispatchTable& table, IDispatch* self, const DISPPARAMS& arguments,
             std::uint32_t* argumentError)
      : table_(table), self_(self), arguments_(arguments), argumentError_(argumentError) {}

  HRESULT Run(DISPID id, std::uint16_t flags, Variant* result, EXCEPINFO* failure);

 private:
  HRESULT PlaceArguments();
  HRESULT PlaceNamedArguments();
  const MemberRow* FindMember(DISPID id, std::uint16_t flags) const;
  HRESULT CoerceArguments(const MemberRow& member);
  HRESULT Coerce(const ArgumentRow& row, std::size_t index, std::uint32_t element);
  bool AskForInterface(const ArgumentRow& row, std::size_t index);
  HRESULT Refuse(HRESULT code, std::uint32_t element) const;
  Variant TakeResult(VARTYPE type);

  static constexpr std::uint32_t kMostElements = 4;  // the largest limit of a table

  const DispatchTable& table_;
  IDispatch* self_;
  const DISPPARAMS& arguments_;
  std::uint32_t* argumentError_;
  const Variant* elements_[kMostElements] = {};  // in the host's reversed order
  Variant empty_;
  Variant changed_[MemberCall::kMostArguments];
  IUnknownPtr asked_[MemberCall::kMostArguments];
  MemberCall call_;
};

namespace {

bool IsPropertyPutAlone(const DISPPARAMS& arguments) {
  return arguments.cNamedArgs == 1 && arguments.rgdispidNamedArgs != nullptr &&
         arguments.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
}

bool Fits(CalledBy calledBy, std::uint16_t flags) {
  if (calledBy == CalledBy::kRead) return (flags & DISPATCH_PROPERTYGET) != 0;
  if (calledBy == CalledBy::kWrite) return (flags & DISPATCH_PROPERTYPUT) != 0;
  return true;
}

void TakeErrorRecord(HRESULT code, EXCEPINFO* failure) {
  failure->pfnDeferredFillIn = nullptr;
  failure->scode = code;
  ErrorInfo record;
  if (!GetErrorInfo(&record)) return;
  failure->bstrSource = record.source;
  failure->bstrDescription = record.description;
  failure->bstrHelpFile = record.helpFile;
  failure->dwHelpContext = record.helpContext;
}

const Variant& Dereferenced(const Variant& given) {
  if (given.Tag() != (VT_BYREF | VT_VARIANT) || given.Data().byref == nullptr) return given;
  return *static_cast<const Variant*>(given.Data().byref);
}

}  // namespace

HRESULT Invocation::Run(DISPID id, std::uint16_t flags, Variant* result, EXCEPINFO* failure) {
  const HRESULT placed = PlaceArguments();
  if (Failed(placed)) return placed;
  const MemberRow* const member = FindMember(id, flags);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
  if (arguments_.cArgs != member->argumentCount) return DISP_E_BADPARAMCOUNT;
  const HRESULT coerced = CoerceArguments(*member);
  if (Failed(coerced)) return coerced;
  const HRESULT code = member->thunk(self_, call_);
  Variant given = TakeResult(member->result);
  if (result != nullptr) *result = std::move(given);
  if (Failed(code) && failure != nullptr) TakeErrorRecord(code, failure);
  return code;
}

HRESULT Invocation::PlaceArguments() {
  if (table_.named == NamedArgumentUse::kRefused && arguments_.cNamedArgs != 0 &&
      !IsPropertyPutAlone(arguments_))
    return DISP_E_NONAMEDARGS;
  if (arguments_.cArgs != 0 && arguments_.rgvarg == nullptr) return E_INVALIDARG;
  const bool honoured = table_.named == NamedArgumentUse::kHonoured;
  for (std::uint32_t i = 0; i < arguments_.cArgs; ++i)
    elements_[i] = honoured && i < arguments_.cNamedArgs ? &empty_ : &arguments_.rgvarg[i];
  return honoured ? PlaceNamedArguments() : S_OK;
}

// Unnamed arguments keep their positions; a named one may replace such an argument, and leaves its own
// position empty.
HRESULT Invocation::PlaceNamedArguments() {
  const DISPID* const ids = arguments_.rgdispidNamedArgs;
  const auto count = static_cast<std::int64_t>(arguments_.cArgs);
  for (std::uint32_t i = 0; i < arguments_.cNamedArgs; ++i) {
    if (ids == nullptr || i >= arguments_.cArgs) return Refuse(DISP_E_PARAMNOTFOUND, i);
    if (i == 0 && ids[0] == DISPID_PROPERTYPUT) {
      elements_[0] = &arguments_.rgvarg[0];
      continue;
    }
    if (ids[i] < 0 || ids[i] >= count) return Refuse(DISP_E_PARAMNOTFOUND, i);
    elements_[count - ids[i] - 1] = &arguments_.rgvarg[i];
  }
  return S_OK;
}

const MemberRow* Invocation::FindMember(DISPID id, std::uint16_t flags) const {
  const MemberRow* const end = table_.members + table_.memberCount;
  const MemberRow* row = table_.members;
  while (row != end && row->id != id) ++row;
  while (row != end && !Fits(row->calledBy, flags)) ++row;
  return row == end ? nullptr : row;
}

HRESULT Invocation::CoerceArguments(const MemberRow& member) {
  for (std::uint32_t index = 0; index < member.argumentCount; ++index) {
    const HRESULT code = Coerce(member.arguments[index], index, member.argumentCount - index - 1);
    if (Failed(code)) return code;
  }
  return S_OK;
}

HRESULT Invocation::Coerce(const ArgumentRow& row, std::size_t index, std::uint32_t element) {
  const Variant& given = *elements_[element];
  call_.arguments_[index] = &given;
  if (row.type == VT_VARIANT) {
    call_.arguments_[index] = &Dereferenced(given);
    return S_OK;
  }
  if (given.Tag() != row.type) {
    if (Failed(VariantChangeType(&changed_[index], given, row.type)))
      return Refuse(DISP_E_TYPEMISMATCH, element);
    call_.arguments_[index] = &changed_[index];
  }
  return AskForInterface(row, index) ? S_OK : Refuse(DISP_E_TYPEMISMATCH, element);
}

// False for an object that is null or lacks the interface.
bool Invocation::AskForInterface(const ArgumentRow& row, std::size_t index) {
  if (row.type != VT_DISPATCH && row.type != VT_UNKNOWN) return true;
  IUnknown* const object = call_.arguments_[index]->Object();
  call_.objects_[index] = object;
  if (row.iid == nullptr) return true;
  if (object == nullptr || Failed(object->QueryInterface(*row.iid, &call_.objects_[index]))) return false;
  asked_[index] = IUnknownPtr(static_cast<IUnknown*>(call_.objects_[index]), false);
  return call_.objects_[index] != nullptr;
}

HRESULT Invocation::Refuse(HRESULT code, std::uint32_t element) const {
  if (argumentError_ != nullptr) *argumentError_ = element;
  return code;
}

Variant Invocation::TakeResult(VARTYPE type) {
  VariantData data;
  switch (type) {
    case VT_BSTR:
      return Variant::FromString(call_.text);
    case VT_VARIANT:
      return std::move(call_.value);
    case VT_I2:
    case VT_BOOL:
      data.iVal = call_.shortValue;
      break;
    case VT_I4:
      data.lVal = call_.longValue;
      break;
    case VT_R8:
      data.dblVal = call_.realValue;
      break;
    case VT_DISPATCH:
      data.punkVal = call_.object;
      break;
    default:
      return {};
  }
  return Variant::FromRaw(type, data);
}

HRESULT InvokeMember(const DispatchTable& table, IDispatch* self, DISPID id, std::uint16_t flags,
                     const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                     std::uint32_t* argumentError) noexcept {
  ClearErrorInfo();  // from an earlier failure
  if (arguments == nullptr) return DISP_E_BADVARTYPE;
  if (arguments->cArgs > table.limit) return DISP_E_BADPARAMCOUNT;
  const IDispatchPtr keepAlive(self);  // the old result and the arguments may release it
  if (result != nullptr) result->Clear();
  return Invocation(table, self, *arguments, argumentError).Run(id, flags, result, failure);
}

}  // namespace qv

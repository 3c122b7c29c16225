// SPDX-License-Identifier: Apache-2.0
// Late binding: a host finds a member by its name and calls it by its id, without a typed header. The types
// are those that COM publishes for IDispatch. docs/members.md lists all members.
//
//   DISPID id = 0;
//   const char16_t* name = u"get_ServerName";
//   object->GetIDsOfNames(Guid{}, &name, 1, 0, &id);
//   Variant text;
//   DISPPARAMS none;
//   EXCEPINFO failure;
//   const HRESULT code = object->Invoke(id, Guid{}, 0, DISPATCH_PROPERTYGET, &none, &text, &failure,
//   nullptr);
//
// Failure: result codes; nothing throws. Threads: those of the object (objects.h).
#pragma once

#include <cstdint>

#include "qvscriptwells/unknown.h"
#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

using DISPID = std::int32_t;
using LCID = std::uint32_t;

constexpr DISPID DISPID_VALUE = 0;  // of the default property
constexpr DISPID DISPID_UNKNOWN = -1;
constexpr DISPID DISPID_PROPERTYPUT = -3;

// How a member is called: flags of Invoke, which may be combined.
constexpr std::uint16_t DISPATCH_METHOD = 1;
constexpr std::uint16_t DISPATCH_PROPERTYGET = 2;
constexpr std::uint16_t DISPATCH_PROPERTYPUT = 4;
constexpr std::uint16_t DISPATCH_PROPERTYPUTREF = 8;

// The arguments of one call, borrowed. `rgvarg` holds them in reverse: the last argument of the member is
// element 0. Named ones, if any, are first, with their ids in `rgdispidNamedArgs`.
struct DISPPARAMS {
  const Variant* rgvarg = nullptr;
  const DISPID* rgdispidNamedArgs = nullptr;
  std::uint32_t cArgs = 0;
  std::uint32_t cNamedArgs = 0;
};

// The error of a failed member. The receiver owns the texts.
struct EXCEPINFO {
  std::uint16_t wCode = 0;
  std::uint16_t wReserved = 0;
  WideString bstrSource;
  WideString bstrDescription;
  WideString bstrHelpFile;
  std::uint32_t dwHelpContext = 0;
  void* pvReserved = nullptr;
  HRESULT (*pfnDeferredFillIn)(EXCEPINFO* info) = nullptr;
  HRESULT scode = 0;
};

// Objects of this library have none.
class ITypeInfo;

class IDispatch : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("00020400-0000-0000-c000-000000000046");
  // 0: there is no type library. E_FAIL when the path of the module has 260 units or more.
  virtual HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept = 0;
  // TYPE_E_CANTLOADLIBRARY for index 0, DISP_E_BADINDEX for others; null in *info.
  virtual HRESULT GetTypeInfo(std::uint32_t index, LCID locale, ITypeInfo** info) noexcept = 0;
  // The ids of `count` names, in any case of ASCII letters: members and arguments alike. An argument's id is
  // its position. DISP_E_UNKNOWNNAME at the first unknown name; only the ids before it are written. E_POINTER
  // for null arrays. The interface id and the locale are ignored.
  virtual HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count,
                                LCID locale, DISPID* ids) noexcept = 0;
  // Calls the member `id`. `result`, `failure` and `argumentError` may be null. `result` gets the member's
  // result, even if the member failed, or VT_EMPTY if it has none. A failing member's code is returned
  // unchanged, with its message in *failure, or in the thread's error record if `failure` is null.
  // DISP_E_BADVARTYPE: `arguments` is null. E_INVALIDARG: arguments are counted but the array is null.
  // DISP_E_BADPARAMCOUNT. DISP_E_NONAMEDARGS. DISP_E_PARAMNOTFOUND and DISP_E_TYPEMISMATCH, with the number
  // of the element of `rgvarg` in *argumentError. DISP_E_MEMBERNOTFOUND.
  virtual HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags,
                         const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                         std::uint32_t* argumentError) noexcept = 0;

 protected:
  ~IDispatch() = default;
};

using IDispatchPtr = boost::intrusive_ptr<IDispatch>;

// A value under VT_DISPATCH; adds a reference, null is allowed.
inline Variant FromDispatch(IDispatch* object) noexcept {
  VariantData data;
  data.punkVal = object;
  if (object != nullptr) object->AddRef();
  return Variant::FromRaw(VT_DISPATCH, data);
}
// The object of a VT_DISPATCH, borrowed; null for any other tag.
inline IDispatch* DispatchOf(const Variant& value) noexcept {
  return value.Tag() == VT_DISPATCH ? static_cast<IDispatch*>(value.Object()) : nullptr;
}

// Returns the type information of a class. The client object has this interface but no type information.
class IProvideClassInfo : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("b196b283-bab4-101a-b69c-00aa00341d07");
  // TYPE_E_CANTLOADLIBRARY, and null in *info.
  virtual HRESULT GetClassInfo(ITypeInfo** info) noexcept = 0;

 protected:
  ~IProvideClassInfo() = default;
};

}  // namespace qv

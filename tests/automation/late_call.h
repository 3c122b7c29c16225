// One call of a member by its id, as a host without headers makes it, and what came of it.
#pragma once

#include <string>
#include <vector>

#include "fixtures/shown_value.h"
#include "fixtures/variant_makers.h"
#include "qvscriptwells/dispatch.h"

namespace qv {

// What no call writes: an output parameter that still has it is untouched.
constexpr std::uint32_t kUntouchedIndex = 0xCAFE;
constexpr char16_t kUntouchedText[] = u"untouched";

inline int untouchedPlace = 0;
inline HRESULT DeferredFillIn(EXCEPINFO*) {
  return E_NOTIMPL;
}

class LateCall {
 public:
  LateCall(IDispatch* object, DISPID id, std::uint16_t flags = DISPATCH_METHOD)
      : object_(object), id_(id), flags_(flags) {
    result = Text(kUntouchedText);
    failure.wCode = 11;
    failure.wReserved = 12;
    failure.bstrSource = kUntouchedText;
    failure.bstrDescription = kUntouchedText;
    failure.bstrHelpFile = kUntouchedText;
    failure.dwHelpContext = 13;
    failure.pvReserved = &untouchedPlace;
    failure.pfnDeferredFillIn = DeferredFillIn;
    failure.scode = 14;
  }

  // The arguments in the member's order.
  LateCall& With(const std::vector<Variant>& arguments) {
    arguments_.assign(arguments.rbegin(), arguments.rend());
    return *this;
  }
  // The arguments as they are in the block: the last one first, named ones before all.
  LateCall& WithBlock(const std::vector<Variant>& block) {
    arguments_ = block;
    return *this;
  }
  LateCall& Named(const std::vector<DISPID>& ids) {
    named_ = ids;
    return *this;
  }

  HRESULT Run() { return Run(&result, &failure, &index); }
  HRESULT Run(Variant* resultPlace, EXCEPINFO* failurePlace, std::uint32_t* indexPlace) {
    DISPPARAMS block;
    block.rgvarg = arguments_.empty() ? nullptr : arguments_.data();
    block.cArgs = static_cast<std::uint32_t>(arguments_.size());
    block.rgdispidNamedArgs = named_.empty() ? nullptr : named_.data();
    block.cNamedArgs = static_cast<std::uint32_t>(named_.size());
    return object_->Invoke(id_, Guid{}, 0, flags_, &block, resultPlace, failurePlace, indexPlace);
  }
  std::string Code() { return ShownCode(Run()); }

  // Every field of the failure as it was before the call.
  bool FailureUntouched() const {
    return failure.wCode == 11 && failure.wReserved == 12 && failure.bstrSource == kUntouchedText &&
           failure.bstrDescription == kUntouchedText && failure.bstrHelpFile == kUntouchedText &&
           failure.dwHelpContext == 13 && failure.pvReserved == &untouchedPlace &&
           failure.pfnDeferredFillIn == DeferredFillIn && failure.scode == 14;
  }

  Variant result;
  EXCEPINFO failure;
  std::uint32_t index = kUntouchedIndex;

 private:
  IDispatch* object_;
  DISPID id_;
  std::uint16_t flags_;
  std::vector<Variant> arguments_;
  std::vector<DISPID> named_;
};

// The id of one name; -1 when it is unknown.
inline DISPID IdOf(IDispatch* object, const char16_t* name) {
  DISPID id = -1;
  return Succeeded(object->GetIDsOfNames(Guid{}, &name, 1, 0, &id)) ? id : -1;
}

// What comes of a call that succeeds, such as "VT_I2 5"; else its code.
inline std::string Got(LateCall call) {
  const std::string code = call.Code();
  return code == "0x00000000" ? ShownValue(call.result) : code;
}
inline std::string ReadByName(IDispatch* object, const char16_t* name) {
  return Got(LateCall(object, IdOf(object, name), DISPATCH_PROPERTYGET));
}
inline std::string WriteByName(IDispatch* object, const char16_t* name, const Variant& value) {
  return Got(LateCall(object, IdOf(object, name), DISPATCH_PROPERTYPUT).With({value}));
}
inline std::string CallByName(IDispatch* object, const char16_t* name,
                              const std::vector<Variant>& arguments = {}) {
  return Got(LateCall(object, IdOf(object, name)).With(arguments));
}

}  // namespace qv

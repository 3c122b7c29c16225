// Builds the rows of member tables from the members: types and the call follow from the signature.
//
//   constexpr MemberRow kMembers[] = {
//       Read<&IDuration::get_Day>(3, u"get_Day"),
//       Write<&IDuration::put_Day>(3, u"put_Day", u"RetVal"),
//       Method<&IUrl::ToString>(4, u"ToString"),
//   };
#pragma once

#include <initializer_list>
#include <utility>

#include "dispatch/dispatch_table.h"

namespace qv {

// Maps a parameter of a member to late binding: an argument of type kType, or the result, of type kResult.
// Use returns the argument from the call, or the output parameter for the result.
template <VARTYPE kTag, auto kTake>
struct MemberArgument {
  static constexpr VARTYPE kType = kTag;
  static constexpr VARTYPE kResult = VT_EMPTY;
  static constexpr const Guid* kIid = nullptr;
  static constexpr const Guid* kResultIid = nullptr;
  static decltype(auto) Use(MemberCall& call, std::size_t index) { return (call.*kTake)(index); }
};
template <VARTYPE kTag, auto kPlace>
struct MemberResult {
  static constexpr VARTYPE kType = VT_EMPTY;
  static constexpr VARTYPE kResult = kTag;
  static constexpr const Guid* kIid = nullptr;
  static constexpr const Guid* kResultIid = nullptr;
  static auto* Use(MemberCall& call, std::size_t) { return &(call.*kPlace); }
};

template <class Type>
struct MemberParameter;

template <>
struct MemberParameter<const WideString&> : MemberArgument<VT_BSTR, &MemberCall::Text> {};
template <>
struct MemberParameter<std::int16_t> : MemberArgument<VT_I2, &MemberCall::Short> {};
template <>
struct MemberParameter<std::int32_t> : MemberArgument<VT_I4, &MemberCall::Long> {};
template <>
struct MemberParameter<double> : MemberArgument<VT_R8, &MemberCall::Real> {};
template <>
struct MemberParameter<const Variant&> : MemberArgument<VT_VARIANT, &MemberCall::Value> {};
template <>
struct MemberParameter<IUnknown*> : MemberArgument<VT_UNKNOWN, &MemberCall::Interface> {
  static IUnknown* Use(MemberCall& call, std::size_t index) {
    return static_cast<IUnknown*>(call.Interface(index));
  }
};
template <class Interface>
struct MemberParameter<Interface*> : MemberArgument<VT_DISPATCH, &MemberCall::Interface> {
  static constexpr const Guid* kIid = &Interface::kIid;
  static Interface* Use(MemberCall& call, std::size_t index) {
    return static_cast<Interface*>(call.Interface(index));
  }
};

template <>
struct MemberParameter<WideString*> : MemberResult<VT_BSTR, &MemberCall::text> {};
template <>
struct MemberParameter<std::int16_t*> : MemberResult<VT_I2, &MemberCall::shortValue> {};
template <>
struct MemberParameter<std::int32_t*> : MemberResult<VT_I4, &MemberCall::longValue> {};
template <>
struct MemberParameter<double*> : MemberResult<VT_R8, &MemberCall::realValue> {};
template <>
struct MemberParameter<Variant*> : MemberResult<VT_VARIANT, &MemberCall::value> {};

// Output parameter for an object, which the call holds as IDispatch after the member has returned.
template <class Interface>
class ObjectPlace {
 public:
  explicit ObjectPlace(MemberCall& call) noexcept : call_(call) {}
  ObjectPlace(const ObjectPlace&) = delete;
  ObjectPlace& operator=(const ObjectPlace&) = delete;
  ~ObjectPlace() { call_.object = object_; }
  operator Interface**() noexcept { return &object_; }

 private:
  MemberCall& call_;
  Interface* object_ = nullptr;
};
template <class Interface>
struct MemberParameter<Interface**> : MemberResult<VT_DISPATCH, &MemberCall::object> {
  static constexpr const Guid* kResultIid = &Interface::kIid;
  static ObjectPlace<Interface> Use(MemberCall& call, std::size_t) { return ObjectPlace<Interface>(call); }
};

// The signature of a member.
template <class Member>
struct MemberSignature;
template <class Interface, class... Types>
struct MemberSignature<HRESULT (Interface::*)(Types...) noexcept> {
  static constexpr ArgumentRow kTypes[sizeof...(Types) + 1] = {
      {MemberParameter<Types>::kType, nullptr, MemberParameter<Types>::kIid}..., {}};
  static constexpr std::size_t kArguments = (0 + ... + (MemberParameter<Types>::kResult == VT_EMPTY));
  static constexpr VARTYPE kResult = (VT_EMPTY | ... | MemberParameter<Types>::kResult);
  static constexpr const Guid* ResultIid() {
    // With sanitizers the compiler cannot compare the addresses with null here.
    const VARTYPE results[] = {MemberParameter<Types>::kResult..., VT_EMPTY};
    const Guid* const iids[] = {MemberParameter<Types>::kResultIid..., nullptr};
    std::size_t at = 0;
    while (at < sizeof...(Types) && results[at] != VT_DISPATCH) ++at;
    return iids[at];
  }

  template <auto kMember, std::size_t... kAt>
  static HRESULT Call(IDispatch* self, MemberCall& call, std::index_sequence<kAt...>) {
    return (static_cast<Interface*>(self)->*kMember)(MemberParameter<Types>::Use(call, kAt)...);
  }
  template <auto kMember>
  static HRESULT Thunk(IDispatch* self, MemberCall& call) {
    return Call<kMember>(self, call, std::index_sequence_for<Types...>());
  }
};

// `labels` name the arguments, which come before the result.
template <auto kMember, class... Labels>
constexpr MemberRow MakeRow(DISPID id, const char16_t* name, CalledBy calledBy, Labels... labels) {
  using Of = MemberSignature<decltype(kMember)>;
  static_assert(sizeof...(labels) == Of::kArguments, "a label for each argument");
  MemberRow row{id, name,           calledBy, Of::kResult, &Of::template Thunk<kMember>, sizeof...(labels),
                {}, Of::ResultIid()};
  const char16_t* const all[] = {labels..., nullptr};
  for (std::size_t i = 0; i < sizeof...(labels); ++i) {
    row.arguments[i] = Of::kTypes[i];
    row.arguments[i].label = all[i];
  }
  return row;
}

// A property has a row for reading and one for writing.
template <auto kMember>
constexpr MemberRow Read(DISPID id, const char16_t* name) {
  return MakeRow<kMember>(id, name, CalledBy::kRead);
}
template <auto kMember>
constexpr MemberRow Write(DISPID id, const char16_t* name, const char16_t* label) {
  return MakeRow<kMember>(id, name, CalledBy::kWrite, label);
}
template <auto kMember, class... Labels>
constexpr MemberRow Method(DISPID id, const char16_t* name, Labels... labels) {
  return MakeRow<kMember>(id, name, CalledBy::kAnyFlag, labels...);
}

// The same row with VT_BOOL, since VARIANT_BOOL is only a 16-bit number to the compiler.
constexpr MemberRow OfBool(MemberRow row) {
  if (row.result == VT_I2) row.result = VT_BOOL;
  for (ArgumentRow& argument : row.arguments)
    if (argument.type == VT_I2) argument.type = VT_BOOL;
  return row;
}

}  // namespace qv

// Late binding as data: a table of names and a table of members for each interface, and one engine for all of
// them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "qvscriptwells/dispatch.h"

namespace qv {

// The arguments and the result of a member, in its own types. Arguments count from 0 in the member's order.
class MemberCall {
 public:
  static constexpr std::size_t kMostArguments = 3;

  WideString Text(std::size_t index) const { return arguments_[index]->Text(); }
  std::int16_t Short(std::size_t index) const { return arguments_[index]->Data().iVal; }
  std::int32_t Long(std::size_t index) const { return arguments_[index]->Data().lVal; }
  double Real(std::size_t index) const { return arguments_[index]->Data().dblVal; }
  const Variant& Value(std::size_t index) const { return *arguments_[index]; }
  // The object of an argument, as the interface that its row asks for; borrowed.
  void* Interface(std::size_t index) const { return objects_[index]; }

  // The result: the member that fits the row's result type. Zero and null at first.
  WideString text;
  std::int16_t shortValue = 0;  // VT_I2 and VT_BOOL
  std::int32_t longValue = 0;
  double realValue = 0;
  Variant value;
  IDispatch* object = nullptr;  // with one reference, which the result takes over

 private:
  friend class Invocation;
  const Variant* arguments_[kMostArguments] = {};
  void* objects_[kMostArguments] = {};
};

// Calls one member of the object. `self` is the object as the table's interface.
using MemberThunk = HRESULT (*)(IDispatch* self, MemberCall& call);

struct ArgumentRow {
  VARTYPE type = VT_EMPTY;          // VT_VARIANT takes any value as it is
  const char16_t* label = nullptr;  // for documentation; the names for hosts are in the name table
  const Guid* iid = nullptr;        // the interface that an object must have
};

enum class CalledBy { kAnyFlag, kRead, kWrite };

// One way to call one id. A property has two rows. The search starts at the first row with the id. If a row
// does not fit the flags, the next row is tried even if it has another id; deployed hosts rely on it.
struct MemberRow {
  DISPID id;
  const char16_t* name;
  CalledBy calledBy;
  VARTYPE result;  // VT_EMPTY for none
  MemberThunk thunk;
  std::uint32_t argumentCount = 0;
  ArgumentRow arguments[MemberCall::kMostArguments] = {};
  const Guid* resultIid = nullptr;  // of a VT_DISPATCH
};

struct NameRow {
  std::u16string_view name;
  DISPID id;
};

// How an interface handles named arguments.
enum class NamedArgumentUse { kIgnored, kRefused, kHonoured };

struct DispatchTable {
  const char16_t* interfaceName;
  const Guid* iid;
  std::uint32_t limit;  // of arguments, for all members alike
  NamedArgumentUse named;
  const NameRow* names;
  std::size_t nameCount;
  const MemberRow* members;
  std::size_t memberCount;
};

// The table of `Interface`; names and members are borrowed.
template <class Interface, std::size_t kNames, std::size_t kMembers>
constexpr DispatchTable TableOf(const char16_t* interfaceName, std::uint32_t limit, NamedArgumentUse named,
                                const NameRow (&names)[kNames], const MemberRow (&members)[kMembers]) {
  return {interfaceName, &Interface::kIid, limit, named, names, kNames, members, kMembers};
}

HRESULT FindIds(const DispatchTable& table, const char16_t* const* names, std::uint32_t count,
                DISPID* ids) noexcept;
HRESULT InvokeMember(const DispatchTable& table, IDispatch* self, DISPID id, std::uint16_t flags,
                     const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                     std::uint32_t* argumentError) noexcept;
HRESULT CountTypeInfo(std::uint32_t* count) noexcept;
HRESULT FindTypeInfo(std::uint32_t index, ITypeInfo** info) noexcept;

}  // namespace qv

// What can be reached by name and id (dispatch.h), told from the tables that serve the calls: for tools and
// for pages of documentation. Values, freely copied. Failure: std::bad_alloc. Threads: any.
#pragma once

#include <cstdint>
#include <vector>

#include "qvscriptwells/dispatch.h"

namespace qv {

// How a member is called. A method looks at no flags.
enum class MemberKind { kMethod, kRead, kWrite };

struct ArgumentDescription {
  const char16_t* name;  // for people; not every interface knows its arguments by name
  VARTYPE type;          // VT_VARIANT takes any value as it is
  // What an object must answer, such as u"IParameters"; null when nothing is asked of it.
  const char16_t* interfaceName;
};

struct MemberDescription {
  const char16_t* name;
  DISPID id;
  MemberKind kind;
  std::vector<ArgumentDescription> arguments;  // in the order of the member; Invoke takes them in reverse
  VARTYPE result;                              // VT_EMPTY for none
  const char16_t* resultInterfaceName;         // of an object; null for other results
};

// A name that GetIDsOfNames knows, in the order in which names are compared: the first row that fits wins.
struct NameDescription {
  const char16_t* name;
  DISPID id;
};

struct InterfaceDescription {
  const char16_t* name;
  Guid iid;
  std::uint32_t mostArguments;  // of any member: more are refused before the id is looked at
  bool takesNamedArguments;
  std::vector<MemberDescription> members;  // in the order of the slots
  std::vector<NameDescription> names;
};

// The ten interfaces, the client's first.
std::vector<InterfaceDescription> DescribeInterfaces();

}  // namespace qv

// SPDX-License-Identifier: Apache-2.0
// Describes the members that can be called by name and id (dispatch.h), for tools and documentation. The data
// come from the tables that serve the calls. Value types. Failure: std::bad_alloc. Threads: any.
#pragma once

#include <cstdint>
#include <vector>

#include "qvscriptwells/dispatch.h"

namespace qv {

// How a member is called. A method ignores the flags.
enum class MemberKind { kMethod, kRead, kWrite };

struct ArgumentDescription {
  const char16_t* name;  // for people; not every interface knows its arguments by name
  VARTYPE type;          // VT_VARIANT takes any value as it is
  // The interface that an object must have, such as u"IParameters"; null if any will do.
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

// A name that GetIDsOfNames knows. Rows are in the order of comparison; the first that matches wins.
struct NameDescription {
  const char16_t* name;
  DISPID id;
};

struct InterfaceDescription {
  const char16_t* name;
  Guid iid;
  std::uint32_t mostArguments;  // of any member: more are rejected before the id is checked
  bool takesNamedArguments;
  std::vector<MemberDescription> members;  // in the order of the slots
  std::vector<NameDescription> names;
};

// The ten interfaces, the client's first.
std::vector<InterfaceDescription> DescribeInterfaces();

}  // namespace qv

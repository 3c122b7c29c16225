#include "tools/manual/object_names.h"

#include "qvscriptwells/describe.h"

namespace qv::cli {

namespace {

constexpr std::size_t kAccessorPrefix = 4;  // "get_" and "put_"

std::string Name(const char16_t* name) {
  std::string text;
  for (; *name != 0; ++name) text += static_cast<char>(*name);  // names are ASCII
  return text;
}

// A property has two members, "get_ServerName" and "put_ServerName", and both go by this.
std::string MemberName(const MemberDescription& member) {
  const std::string name = Name(member.name);
  const bool accessor = name.size() > kAccessorPrefix && name[kAccessorPrefix - 1] == '_';
  return accessor ? name.substr(kAccessorPrefix) : name;
}

}  // namespace

std::vector<std::string> ObjectNames() {
  std::vector<std::string> names;
  for (const InterfaceDescription& one : DescribeInterfaces()) {
    const std::string object = Name(one.name).substr(1);
    names.push_back(object);
    for (const MemberDescription& member : one.members) {
      std::string name = object + "." + MemberName(member);
      if (name != names.back()) names.push_back(std::move(name));
    }
  }
  return names;
}

}  // namespace qv::cli

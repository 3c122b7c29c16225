#include "tools/commands.h"

#include <algorithm>
#include <ostream>

#include "tools/output/describe_text.h"
#include "tools/report/failure.h"
#include "tools/report/standard_output.h"
#include "tools/report/typed_name.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

using Interfaces = std::vector<InterfaceDescription>;

constexpr std::size_t kAccessorPrefix = 4;  // "get_" and "put_"
constexpr std::size_t kLongestEcho = 60;    // characters of a wrong name

// "IParameters" and "Parameters"
bool IsNameOf(const std::string& given, const InterfaceDescription& one) {
  const std::string name = ToUtf8(one.name);
  return IsSameName(given, name) || IsSameName(given, name.substr(1));
}

bool IsAccessor(const std::string& member) {
  return member.size() > kAccessorPrefix && member[kAccessorPrefix - 1] == '_';
}

// A property has three names: "ServerName", "get_ServerName" and "put_ServerName".
bool IsNameOf(const std::string& given, const MemberDescription& member) {
  const std::string name = ToUtf8(member.name);
  return IsSameName(given, name) || (IsAccessor(name) && IsSameName(given, name.substr(kAccessorPrefix)));
}

std::vector<std::string> ObjectNames(const Interfaces& all) {
  std::vector<std::string> names;
  for (const InterfaceDescription& one : all) names.push_back(ToUtf8(one.name).substr(1));
  return names;
}

// Names of properties also without "get_" and "put_".
std::vector<std::string> MemberNames(const InterfaceDescription& one) {
  std::vector<std::string> names;
  for (const MemberDescription& member : one.members) {
    names.push_back(ToUtf8(member.name));
    if (IsAccessor(names.back())) names.push_back(names.back().substr(kAccessorPrefix));
  }
  return names;
}

// "QvClientServiceRaw.Init" for "init"; empty if no object has such a member.
std::string WhereItIs(const Interfaces& all, const std::string& name) {
  for (const InterfaceDescription& one : all)
    for (const std::string& member : MemberNames(one))
      if (IsSameName(name, member)) return ToUtf8(one.name).substr(1) + "." + member;
  return "";
}

// The name in one line, cut if it is long.
std::string Echoed(const std::string& name) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const bool isFirstByte = (static_cast<unsigned char>(name[i]) & 0xC0) != 0x80;
    if (isFirstByte && ++characters > kLongestEcho) return OneLine(name.substr(0, i)) + "...";
  }
  return OneLine(name);
}

// This member of any object, else the closest candidate, else the closest member of any object; or nothing.
std::string WhatWasMeant(const Interfaces& all, const std::string& name,
                         const std::vector<std::string>& candidates) {
  std::string meant = WhereItIs(all, name);
  if (meant.empty()) meant = ClosestName(name, candidates);
  if (!meant.empty()) return meant;
  std::vector<std::string> members;
  for (const InterfaceDescription& one : all)
    for (const std::string& member : MemberNames(one)) members.push_back(member);
  return WhereItIs(all, ClosestName(name, members));
}

[[noreturn]] void Refuse(const Interfaces& all, const std::string& name,
                         const std::vector<std::string>& candidates) {
  const std::string meant = WhatWasMeant(all, name, candidates);
  throw Failure(ExitStatus::kUsage,
                "no member " + Echoed(name) + (meant.empty() ? "" : "; did you mean " + meant + "?"));
}

InterfaceDescription FindObject(const Interfaces& all, const std::string& name) {
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const auto& one) { return IsNameOf(name, one); });
  if (found == all.end()) Refuse(all, name, ObjectNames(all));
  return *found;
}

InterfaceDescription WithMember(const Interfaces& all, const InterfaceDescription& one,
                                const std::string& name) {
  InterfaceDescription narrowed = one;
  narrowed.members.clear();
  for (const MemberDescription& member : one.members)
    if (IsNameOf(name, member)) narrowed.members.push_back(member);
  if (narrowed.members.empty()) Refuse(all, name, MemberNames(one));
  return narrowed;
}

Interfaces Selected(const std::string& object) {
  Interfaces all = DescribeInterfaces();
  if (object.empty()) return all;
  const std::size_t dot = object.find('.');
  const InterfaceDescription one = FindObject(all, object.substr(0, dot));
  if (dot == std::string::npos) return {one};
  return {WithMember(all, one, object.substr(dot + 1))};
}

std::string Shown(const DescribeOptions& options) {
  const Interfaces selected = Selected(options.object);
  if (options.markdown) return DescribeAsMarkdown(selected);
  return options.json ? DescribeAsJson(selected) : DescribeAsText(selected);
}

}  // namespace

ExitStatus DescribeCommand(const DescribeOptions& options, std::ostream& out) {
  out << Shown(options) << std::flush;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
  return ExitStatus::kOk;
}

}  // namespace qv::cli

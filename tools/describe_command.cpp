#include "tools/describe_command.h"

#include <algorithm>
#include <ostream>

#include "tools/closest_name.h"
#include "tools/describe_text.h"
#include "tools/failure.h"

namespace qv::cli {

namespace {

using Interfaces = std::vector<InterfaceDescription>;

char Lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsSame(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lowered(x) == Lowered(y); });
}

// "IParameters" and "Parameters"
bool IsNameOf(const std::string& given, const InterfaceDescription& one) {
  const std::string name = ToUtf8(one.name);
  return IsSame(given, name) || IsSame(given, name.substr(1));
}

// A property answers to "ServerName", "get_ServerName" and "put_ServerName".
bool IsNameOf(const std::string& given, const MemberDescription& member) {
  const std::string name = ToUtf8(member.name);
  return IsSame(given, name) || (name.size() > 4 && name[3] == '_' && IsSame(given, name.substr(4)));
}

std::vector<std::string> ObjectNames(const Interfaces& all) {
  std::vector<std::string> names;
  for (const InterfaceDescription& one : all) names.push_back(ToUtf8(one.name).substr(1));
  return names;
}

std::vector<std::string> MemberNames(const InterfaceDescription& one) {
  std::vector<std::string> names;
  for (const MemberDescription& member : one.members) names.push_back(ToUtf8(member.name));
  return names;
}

[[noreturn]] void Refuse(const std::string& name, const std::vector<std::string>& candidates) {
  throw Failure(ExitStatus::kUsage,
                "no member " + OneLine(name) + "; did you mean " + ClosestName(name, candidates) + "?");
}

InterfaceDescription FindObject(const Interfaces& all, const std::string& name) {
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const auto& one) { return IsNameOf(name, one); });
  if (found == all.end()) Refuse(name, ObjectNames(all));
  return *found;
}

InterfaceDescription WithMember(const InterfaceDescription& one, const std::string& name) {
  InterfaceDescription narrowed = one;
  narrowed.members.clear();
  for (const MemberDescription& member : one.members)
    if (IsNameOf(name, member)) narrowed.members.push_back(member);
  if (narrowed.members.empty()) Refuse(name, MemberNames(one));
  return narrowed;
}

Interfaces Selected(const std::string& object) {
  const Interfaces all = DescribeInterfaces();
  if (object.empty()) return all;
  const std::size_t dot = object.find('.');
  const InterfaceDescription one = FindObject(all, object.substr(0, dot));
  if (dot == std::string::npos) return {one};
  return {WithMember(one, object.substr(dot + 1))};
}

std::string Shown(const DescribeOptions& options) {
  const Interfaces selected = Selected(options.object);
  if (options.markdown) return DescribeAsMarkdown(selected);
  return options.json ? DescribeAsJson(selected) : DescribeAsText(selected);
}

}  // namespace

ExitStatus DescribeCommand(const DescribeOptions& options, std::ostream& out) {
  out << Shown(options) << std::flush;
  if (!out) throw Failure(ExitStatus::kLocal, "cannot write to standard output");
  return ExitStatus::kOk;
}

}  // namespace qv::cli

#include "tools/output/describe_text.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/output/text_table.h"

namespace qv::cli {

namespace {

using Json = nlohmann::ordered_json;

struct TypeRow {
  VARTYPE type;
  const char* name;
};

constexpr TypeRow kTypes[] = {
    {VT_EMPTY, ""},      {VT_I2, "short"},        {VT_I4, "int"},
    {VT_R8, "double"},   {VT_BSTR, "text"},       {VT_BOOL, "boolean"},
    {VT_VARIANT, "any"}, {VT_DISPATCH, "object"}, {VT_UNKNOWN, "object"},
};

constexpr const char* kKinds[] = {"method", "read", "write"};

const char* KindText(MemberKind kind) {
  return kKinds[static_cast<std::size_t>(kind)];
}

std::string GuidText(const Guid& id) {
  char text[37] = {};
  const std::uint8_t* d = id.data4;
  static_cast<void>(std::snprintf(text, sizeof text, "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                                  id.data1, id.data2, id.data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6],
                                  d[7]));
  return text;
}

std::vector<std::string> RowOf(const MemberDescription& member) {
  return {std::to_string(member.id), KindText(member.kind), SignatureOf(member),
          TypeText(member.result, member.resultInterfaceName)};
}

std::string HeadOf(const InterfaceDescription& one) {
  return ToUtf8(one.name) + " {" + GuidText(one.iid) + "}";
}

Json JsonType(VARTYPE type, const char16_t* interfaceName) {
  Json json;
  json["type"] = TypeText(type, interfaceName);
  json["tag"] = type;
  return json;
}

Json JsonOf(const MemberDescription& member) {
  Json json;
  json["name"] = ToUtf8(member.name);
  json["id"] = member.id;
  json["kind"] = KindText(member.kind);
  json["arguments"] = Json::array();
  for (const ArgumentDescription& argument : member.arguments) {
    Json one = JsonType(argument.type, argument.interfaceName);
    one["name"] = ToUtf8(argument.name);
    json["arguments"].push_back(one);
  }
  json["result"] = member.result == VT_EMPTY ? Json() : JsonType(member.result, member.resultInterfaceName);
  return json;
}

Json JsonOf(const InterfaceDescription& one) {
  Json json;
  json["name"] = ToUtf8(one.name);
  json["iid"] = GuidText(one.iid);
  json["mostArguments"] = one.mostArguments;
  json["namedArguments"] = one.takesNamedArguments;
  json["members"] = Json::array();
  for (const MemberDescription& member : one.members) json["members"].push_back(JsonOf(member));
  json["names"] = Json::array();
  for (const NameDescription& name : one.names)
    json["names"].push_back({{"name", ToUtf8(name.name)}, {"id", name.id}});
  return json;
}

std::string MarkdownRow(const MemberDescription& member) {
  std::string row = "|";
  for (const std::string& cell : RowOf(member)) row += " " + (cell.empty() ? "-" : cell) + " |";
  return row + "\n";
}

std::string MarkdownOf(const InterfaceDescription& one) {
  std::string text = "\n## " + ToUtf8(one.name) + "\n\n`{" + GuidText(one.iid) + "}`, at most " +
                     std::to_string(one.mostArguments) + " argument" + (one.mostArguments == 1 ? "" : "s") +
                     (one.takesNamedArguments ? ", takes named arguments" : "") +
                     ".\n\n| Id | Kind | Member | Result |\n|---|---|---|---|\n";
  for (const MemberDescription& member : one.members) text += MarkdownRow(member);
  text += "\nNames:";
  const char* separator = " ";
  for (const NameDescription& name : one.names) {
    text += separator + ("`" + ToUtf8(name.name) + "` ") + std::to_string(name.id);
    separator = ", ";
  }
  return text + ".\n";
}

constexpr char kMarkdownHead[] =
    R"(# Members by name and id

Written by `scriptwells describe --markdown` from the tables that `Invoke` uses. An id under "Names" is the result of
`GetIDsOfNames` for that name: the first match wins, in any case of ASCII letters. For names of arguments it is their
position. The flags of `Invoke` choose between `read` and `write`; a method ignores them. More arguments than "at most"
are rejected before the id is checked; then each member needs exactly its number of arguments.
)";

}  // namespace

std::string TypeText(VARTYPE type, const char16_t* interfaceName) {
  for (const TypeRow& row : kTypes)
    if (row.type == type)
      return interfaceName == nullptr ? row.name : std::string(row.name) + " " + ToUtf8(interfaceName);
  return std::to_string(type);
}

std::string SignatureOf(const MemberDescription& member) {
  std::string text = ToUtf8(member.name) + "(";
  const char* separator = "";
  for (const ArgumentDescription& argument : member.arguments) {
    text += separator + ToUtf8(argument.name) + ": " + TypeText(argument.type, argument.interfaceName);
    separator = ", ";
  }
  return text + ")";
}

std::string DescribeAsText(const std::vector<InterfaceDescription>& interfaces) {
  std::string text;
  for (const InterfaceDescription& one : interfaces) {
    std::vector<std::vector<std::string>> rows;
    for (const MemberDescription& member : one.members) rows.push_back(RowOf(member));
    text += (text.empty() ? "" : "\n") + HeadOf(one) + "\n" +
            FormatColumns({"ID", "KIND", "MEMBER", "RESULT"}, rows);
  }
  return text;
}

std::string DescribeAsJson(const std::vector<InterfaceDescription>& interfaces) {
  Json json;
  json["interfaces"] = Json::array();
  for (const InterfaceDescription& one : interfaces) json["interfaces"].push_back(JsonOf(one));
  return json.dump() + "\n";
}

std::string DescribeAsMarkdown(const std::vector<InterfaceDescription>& interfaces) {
  std::string text = kMarkdownHead;
  for (const InterfaceDescription& one : interfaces) text += MarkdownOf(one);
  return text;
}

}  // namespace qv::cli

#include "tools/inspect/value_rules.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <regex>
#include <string>

#include "tools/report/typed_name.h"

namespace qv::cli {

namespace {

// As the client's register of formaters has them; a test compares the two.
struct TypeName {
  const char* name;
  Reading reading;
};
constexpr TypeName kTypeNames[] = {
    {"boolean", Reading::kBoolean},
    {"xsd:boolean", Reading::kBoolean},
    {"byte", Reading::kByte},
    {"xsd:byte", Reading::kByte},
    {"short", Reading::kShort},
    {"xsd:short", Reading::kShort},
    {"int", Reading::kInt},
    {"xsd:int", Reading::kInt},
    {"long", Reading::kLong},
    {"xsd:long", Reading::kLong},
    {"float", Reading::kReal},
    {"double", Reading::kReal},
    {"xsd:double", Reading::kReal},
    {"string", Reading::kText},
    {"xsd:string", Reading::kText},
    {"date", Reading::kDate},
    {"xsd:date", Reading::kDate},
    {"time", Reading::kTime},
    {"xsd:time", Reading::kTime},
    {"datetime", Reading::kDateTime},
    {"xsd:datetime", Reading::kDateTime},
    {"duration", Reading::kDuration},
    {"xsd:duration", Reading::kDuration},
    {"url", Reading::kLink},
    {"sof:url", Reading::kLink},
};

constexpr const char* kColumnTypes[] = {"xsd:byte",
                                        "xsd:string",
                                        "qvdt:Char",
                                        "qvdt:Memo",
                                        "qvdt:HTML",
                                        "qvdt:URL",
                                        "xsd:boolean",
                                        "xsd:short",
                                        "xsd:smallint",
                                        "xsd:double",
                                        "qvdt:Money",
                                        "qvdt:RelTimeStamp",
                                        "xsd:int",
                                        "xsd:date",
                                        "xsd:objectidentifier",
                                        "xsd:time",
                                        "qvdt:ObjectIdentifier",
                                        "xsd:datetime",
                                        "xsd:dateTime",
                                        "qvdt:EffectiveDateFrom",
                                        "sof:url",
                                        "qvdt:EffectiveDateUntil",
                                        "sof:URL",
                                        "xsd:duration",
                                        "qvdt:Blob"};

constexpr char kDate[] = R"((?!0000)\d{4}-(0[1-9]|1[0-2])-(0[1-9]|[12]\d|3[01]))";
constexpr char kTime[] = R"((([01]\d|2[0-3]):[0-5]\d:[0-5]\d(\.\d+)?))";
constexpr char kZone[] = R"((Z|[+-]\d\d:\d\d)?)";
constexpr char kSpan[] = R"(-?P(?=[\dT])(\d+Y)?(\d+M)?(\d+D)?(T(?=\d)(\d+H)?(\d+M)?(\d+(\.\d+)?S)?)?)";
constexpr char kReal[] = R"([+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?)";

struct Form {
  Reading reading;
  std::string pattern;
};

const std::vector<Form>& Forms() {
  static const std::vector<Form> forms = {{Reading::kBoolean, "true|false|0|1"},
                                          {Reading::kShort, R"([+-]?\d+)"},
                                          {Reading::kInt, R"([+-]?\d+)"},
                                          {Reading::kReal, kReal},
                                          {Reading::kDate, std::string(kDate) + "Z?"},
                                          {Reading::kTime, std::string(kTime) + kZone},
                                          {Reading::kDateTime, std::string(kDate) + "T" + kTime + kZone},
                                          {Reading::kDuration, kSpan}};
  return forms;
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), Lowered);
  return lower;
}

bool IsInRange(Reading reading, const std::string& text) {
  const long long most = reading == Reading::kShort ? 32767 : 2147483647;
  const long long number = std::strtoll(text.c_str(), nullptr, 10);
  return number >= -most - 1 && number <= most;
}

bool IsDay(const std::string& text) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const std::size_t dash = text.find('-');
  const auto number = [&text](std::size_t at, std::size_t count) {
    return std::strtol(text.substr(at, count).c_str(), nullptr, 10);
  };
  const long year = number(0, dash);
  const long month = number(dash + 1, 2);
  const long day = number(dash + 4, 2);
  const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return day <= kDays[month - 1] + (month == 2 && isLeap ? 1 : 0);
}

// A std::regex of a longer text takes a stack frame for each character.
constexpr std::size_t kLongestText = 200;

bool HasForm(Reading reading, const std::string& text) {
  for (const Form& form : Forms()) {
    if (form.reading != reading) continue;
    if (text.size() > kLongestText || !std::regex_match(text, std::regex(form.pattern))) return false;
    if (reading == Reading::kShort || reading == Reading::kInt) return IsInRange(reading, text);
    return (reading != Reading::kDate && reading != Reading::kDateTime) || IsDay(text);
  }
  return true;
}

bool HasLinkForm(const std::string& text) {
  static const char* const kMarks[] = {"<URL>", "</URL>", "<C>", "</C>"};
  return std::all_of(std::begin(kMarks), std::end(kMarks),
                     [&](const char* mark) { return text.find(mark) != std::string::npos; });
}

// A fraction other than zeros, or a zone of hours.
bool LosesTime(Reading reading, const std::string& text) {
  if (reading != Reading::kTime && reading != Reading::kDateTime) return false;
  static const std::regex loss(R"(.*(\.0*[1-9]\d*(Z|[+-].*)?|T.*[+-](?!24:00|00:00)\d\d:\d\d))");
  return text.size() <= kLongestText && std::regex_match(text, loss);
}

void FindTextFaults(const XmlNode& node, Reading reading, Findings& findings) {
  const std::string text = node.OwnText();
  if (reading == Reading::kLong || reading == Reading::kByte) findings.push_back(At(Rule::kTypeLost, node));
  if (reading == Reading::kLink)
    findings.push_back(At(HasLinkForm(text) ? Rule::kValueLost : Rule::kValueText, node));
  else if (!HasForm(reading, text))
    findings.push_back(At(Rule::kValueText, node));
  else if (LosesTime(reading, text))
    findings.push_back(At(Rule::kValueLost, node));
}

// The text of a cell of a date or duration fails the table if it is empty, and so does a link of another
// form; other empty cells are read as zeros.
void FindCellFaults(const XmlNode& cell, const std::string& type, Findings& findings) {
  const std::string text = cell.OwnText();
  const Reading reading = ReadingOf(type);
  const bool needsText = reading == Reading::kDate || reading == Reading::kTime ||
                         reading == Reading::kDateTime || reading == Reading::kDuration;
  const bool isLink = reading == Reading::kLink && !text.empty();
  if (((needsText || !text.empty()) && !HasForm(reading, text)) || (isLink && !HasLinkForm(text)))
    findings.push_back(At(Rule::kValueText, cell));
}

std::vector<const XmlNode*> Elements(const XmlNode& parent) {
  std::vector<const XmlNode*> elements;
  for (const XmlNode& child : parent.children)
    if (child.IsElement()) elements.push_back(&child);
  return elements;
}

std::vector<std::string> ColumnTypes(const XmlNode& schema, Findings& findings) {
  std::vector<std::string> types;
  for (const XmlNode* column : Elements(schema)) {
    const std::string* name = column->Attribute("xsd:name");
    const std::string* type = column->Attribute("xsd:type");
    if (name == nullptr || type == nullptr) findings.push_back(At(Rule::kColumnNames, *column));
    const bool isKnown = type == nullptr || std::find(std::begin(kColumnTypes), std::end(kColumnTypes),
                                                      *type) != std::end(kColumnTypes);
    if (!isKnown) findings.push_back(At(Rule::kColumnTypes, *column));
    types.push_back(type == nullptr ? std::string() : *type);
  }
  return types;
}

void FindRowFaults(const XmlNode& row, const std::vector<std::string>& types, Findings& findings) {
  FindWhiteSpace(row, nullptr, findings);
  const std::vector<const XmlNode*> cells = Elements(row);
  if (cells.size() != types.size())
    findings.push_back(
        At(Rule::kCellCount, row,
           std::to_string(cells.size()) + " cells for " + std::to_string(types.size()) + " columns"));
  for (std::size_t i = 0; i < std::min(cells.size(), types.size()); ++i)
    FindCellFaults(*cells[i], types[i], findings);
}

void FindTableFaults(const XmlNode& table, Findings& findings) {
  const std::vector<const XmlNode*> blocks = Elements(table);
  if (blocks.size() < 2) return findings.push_back(At(Rule::kTableBlocks, table));
  FindWhiteSpace(table, blocks[1], findings);
  FindFirstWhiteSpace(*blocks[0], findings);
  FindWhiteSpace(*blocks[1], nullptr, findings);
  const XmlNode* schema = blocks[0]->FirstElement();
  if (schema == nullptr) return findings.push_back(At(Rule::kTableBlocks, *blocks[0]));
  FindWhiteSpace(*schema, nullptr, findings);
  const std::vector<std::string> types = ColumnTypes(*schema, findings);
  for (const XmlNode* row : Elements(*blocks[1])) FindRowFaults(*row, types, findings);
}

const std::pair<std::string, std::string>* AttributeLike(const XmlNode& node, std::string_view local) {
  const auto found = std::find_if(node.attributes.begin(), node.attributes.end(),
                                  [&](const auto& attribute) { return LocalName(attribute.first) == local; });
  return found == node.attributes.end() ? nullptr : &*found;
}

bool IsNull(const XmlNode& value) {
  constexpr const char* kNames[] = {"null", "nil"};
  return std::any_of(std::begin(kNames), std::end(kNames), [&value](const char* name) {
    const auto* null = AttributeLike(value, name);
    return null != nullptr && (null->second == "true" || null->second == "1");
  });
}

}  // namespace

Finding At(Rule rule, const XmlNode& node, std::string_view what) {
  return {rule, Part::kBody, node.begin, node.end, std::string(what)};
}

Reading ReadingOf(std::string_view typeName) {
  const std::string name = Lower(typeName);
  if (LocalName(name).find("recordlist") != std::string_view::npos) return Reading::kTable;
  for (const TypeName& known : kTypeNames)
    if (name == known.name) return known.reading;
  return Reading::kNone;
}

void FindWhiteSpace(const XmlNode& parent, const XmlNode* last, Findings& findings) {
  if (parent.FirstElement() == nullptr) return;
  for (const XmlNode& child : parent.children) {
    if (&child == last) return;
    if (!child.IsElement()) return findings.push_back(At(Rule::kWhiteSpace, child));
  }
}

void FindFirstWhiteSpace(const XmlNode& parent, Findings& findings) {
  FindWhiteSpace(parent, parent.FirstElement(), findings);
}

void FindValueFaults(const XmlNode& value, Findings& findings) {
  if (IsNull(value)) return findings.push_back(At(Rule::kNullValue, value));
  if (value.Attribute("href") != nullptr) return findings.push_back(At(Rule::kValueInPlace, value));
  const std::string* type = value.Attribute("xsi:type");
  if (type == nullptr) return findings.push_back(At(Rule::kTypeAttribute, value));
  const Reading reading = ReadingOf(*type);
  if (reading == Reading::kNone) return findings.push_back(At(Rule::kTypeName, value));
  if (reading == Reading::kTable) return FindTableFaults(value, findings);
  FindTextFaults(value, reading, findings);
}

}  // namespace qv::cli

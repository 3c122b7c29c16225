#include "tools/output/answer_format.h"

#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "tools/output/csv_text.h"
#include "tools/output/text_table.h"
#include "tools/report/json_text.h"
#include "tools/values/date_text.h"
#include "tools/values/object_text.h"

namespace qv::cli {

namespace {

using Json = nlohmann::ordered_json;

struct TypeRow {
  VARTYPE tag;
  const char* name;
};

constexpr TypeRow kTypes[] = {
    {VT_EMPTY, "empty"}, {VT_NULL, "null"}, {VT_I1, "byte"},     {VT_I2, "short"},
    {VT_I4, "int"},      {VT_INT, "int"},   {VT_I8, "long"},     {VT_BOOL, "boolean"},
    {VT_R4, "float"},    {VT_R8, "double"}, {VT_BSTR, "string"},
};

// A reader that keeps numbers as doubles would round larger numbers.
constexpr std::int64_t kSafeWhole = 9007199254740991;

// A float is printed as a float: 0.1f is "0.1", while a double of it has more digits.
std::string NumberText(double value, bool single) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  char text[64];
  char* const end = text + sizeof text;
  const std::to_chars_result result =
      single ? std::to_chars(text, end, static_cast<float>(value)) : std::to_chars(text, end, value);
  return std::string(text, result.ptr);
}

Json NumberJson(double value, bool single) {
  if (!std::isfinite(value)) return NumberText(value, single);
  if (!single) return value;
  const std::string text = NumberText(value, single);
  double shortest = 0;
  std::from_chars(text.data(), text.data() + text.size(), shortest);
  return shortest;
}

Json LongJson(std::int64_t value) {
  if (value > kSafeWhole || value < -kSafeWhole) return std::to_string(value);
  return value;
}

// Null for dates, objects and tags that have no name.
const char* PlainTypeName(VARTYPE tag) {
  for (const TypeRow& row : kTypes)
    if (row.tag == tag) return row.name;
  return nullptr;
}

bool IsObject(const Variant& value) {
  return value.Tag() == VT_UNKNOWN || value.Tag() == VT_DISPATCH;
}

std::string DateText(double serial) {
  return SerialDateText(serial).value_or(NumberText(serial, false));
}

Json ObjectJson(const Variant& value) {
  return value.Object() == nullptr ? Json() : Json(ObjectText(value));
}

Json SecondsJson(double seconds) {
  const bool whole = seconds == std::trunc(seconds) && std::abs(seconds) <= static_cast<double>(kSafeWhole);
  return whole ? Json(static_cast<std::int64_t>(seconds)) : NumberJson(seconds, false);
}

void AddDuration(const DurationFields& fields, Json& answer) {
  answer["negative"] = fields.negative;
  answer["years"] = fields.years;
  answer["months"] = fields.months;
  answer["days"] = fields.days;
  answer["hours"] = fields.hours;
  answer["minutes"] = fields.minutes;
  answer["seconds"] = SecondsJson(fields.seconds);
}

// The parts of the value that its text leaves out.
void AddDetails(const Variant& value, Json& answer) {
  if (value.Tag() == VT_DATE) answer["serial"] = NumberJson(value.Data().date, false);
  if (const std::optional<DurationFields> duration = ReadDuration(value)) AddDuration(*duration, answer);
  if (const std::optional<UrlFields> url = ReadUrl(value)) answer["caption"] = url->caption;
}

Json ValueJson(const Variant& value) {
  const VariantData& data = value.Data();
  switch (value.Tag()) {
    case VT_I1:
      return data.cVal;
    case VT_I2:
      return data.iVal;
    case VT_I4:
    case VT_INT:
      return data.lVal;
    case VT_I8:
      return LongJson(data.llVal);
    case VT_BOOL:
      return data.boolVal != VARIANT_FALSE;
    case VT_R4:
      return NumberJson(data.fltVal, true);
    case VT_R8:
      return NumberJson(data.dblVal, false);
    case VT_DATE:
      return DateText(data.date);
    case VT_BSTR:
      return value.Text().IsNull() ? Json() : Json(ToUtf8(value.Text()));
    default:
      return IsObject(value) ? ObjectJson(value) : Json();
  }
}

std::string FormatJson(const Variant& value) {
  Json answer;
  answer["type"] = TypeName(value);
  answer["value"] = ValueJson(value);
  answer["tag"] = value.Tag();
  AddDetails(value, answer);
  return JsonText(answer) + "\n";
}

std::string FormatCsv(const Variant& value, const std::string& nullText) {
  return "value\r\n" + (HasValue(value) ? CsvOnlyField(ValueText(value), nullText) : nullText) + "\r\n";
}

}  // namespace

std::string TypeName(const Variant& value) {
  if (value.Tag() == VT_DATE) return SerialDateForm(value.Data().date);
  if (IsObject(value)) return ObjectType(value);
  const char* name = PlainTypeName(value.Tag());
  return name != nullptr ? name : "unknown";
}

std::string ValueText(const Variant& value) {
  const VariantData& data = value.Data();
  switch (value.Tag()) {
    case VT_I1:
      return std::to_string(data.cVal);
    case VT_I2:
      return std::to_string(data.iVal);
    case VT_I4:
    case VT_INT:
      return std::to_string(data.lVal);
    case VT_I8:
      return std::to_string(data.llVal);
    case VT_BOOL:
      return data.boolVal != VARIANT_FALSE ? "true" : "false";
    case VT_R4:
      return NumberText(data.fltVal, true);
    case VT_R8:
      return NumberText(data.dblVal, false);
    case VT_DATE:
      return DateText(data.date);
    case VT_BSTR:
      return ToUtf8(value.Text());
    default:
      return ObjectText(value);
  }
}

bool HasValue(const Variant& value) {
  const VARTYPE tag = value.Tag();
  if (tag == VT_EMPTY || tag == VT_NULL) return false;
  if (tag == VT_BSTR) return !value.Text().IsNull();
  if (IsObject(value)) return value.Object() != nullptr;
  return tag == VT_DATE || PlainTypeName(tag) != nullptr;
}

std::string ValueJsonText(const Variant& value) {
  return JsonText(ValueJson(value));
}

std::string FormatAnswer(OutputFormat format, const Variant& value, const std::string& nullText) {
  if (format == OutputFormat::kJson) return FormatJson(value);
  if (format == OutputFormat::kTable) return FormatTable({{"answer", TypeName(value), ValueText(value)}});
  if (format == OutputFormat::kCsv) return FormatCsv(value, nullText);
  return ValueText(value) + "\n";
}

}  // namespace qv::cli

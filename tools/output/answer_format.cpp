#include "tools/output/answer_format.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <nlohmann/json.hpp>
#include <optional>

#include "face/text/csv_text.h"
#include "face/text/number_text.h"
#include "tools/output/text_table.h"
#include "tools/report/json_text.h"

namespace qv::cli {

namespace {

using scriptwells::DateTime;
using scriptwells::Duration;
using scriptwells::Time;
using scriptwells::Type;
using scriptwells::Value;
using Json = nlohmann::ordered_json;

// How the interfaces below the library tag a value of the type (VARTYPE), which readers of the JSON compare.
struct TypeRow {
  Type type;
  const char* name;
  int tag;
};

constexpr TypeRow kTypes[] = {
    {Type::kEmpty, "empty", 0},        {Type::kBoolean, "boolean", 11}, {Type::kByte, "byte", 16},
    {Type::kShort, "short", 2},        {Type::kInt, "int", 22},         {Type::kLong, "long", 20},
    {Type::kFloat, "float", 4},        {Type::kDouble, "double", 5},    {Type::kString, "string", 8},
    {Type::kDate, "date", 7},          {Type::kTime, "time", 7},        {Type::kDateTime, "datetime", 7},
    {Type::kDuration, "duration", 13}, {Type::kLink, "url", 13},        {Type::kTable, "recordlist", 13},
};

const TypeRow& RowOf(Type type) {
  return *std::find_if(std::begin(kTypes), std::end(kTypes),
                       [type](const TypeRow& row) { return row.type == type; });
}

// A point in time; in a time the date is day 0.
std::optional<DateTime> PointOf(const Value& value) {
  if (value.Is<Time>()) return DateTime{{}, value.As<Time>()};
  if (value.Is<scriptwells::Date>() || value.Is<DateTime>()) return value.As<DateTime>();
  return std::nullopt;
}

// Days since 1899-12-30.
double SerialOf(const DateTime& point) {
  constexpr std::time_t kSecondsOfDay = 86400;
  constexpr std::time_t kDayOfEpoch = 25569;
  std::tm day = {};
  day.tm_year = point.date.year - 1900;
  day.tm_mon = point.date.month - 1;
  day.tm_mday = point.date.day;
  const std::time_t days = ::timegm(&day) / kSecondsOfDay + kDayOfEpoch;
  const Time& time = point.time;
  const int milliseconds = ((time.hour * 60 + time.minute) * 60 + time.second) * 1000 + time.millisecond;
  return static_cast<double>(days) + milliseconds / 86'400'000.0;
}

// The number of a point outside the years that other programs read; else empty.
std::string FarPointText(const Value& value) {
  const std::optional<DateTime> point = PointOf(value);
  const bool isFar = point && (point->date.year < 1 || point->date.year > 9999);
  return isFar ? scriptwells::NumberText(SerialOf(*point)) : std::string();
}

std::string TextOf(const Value& value) {
  const std::string far = FarPointText(value);
  return far.empty() ? value.ToString() : far;
}

std::string ValueJson(const Value& value) {
  const std::string far = FarPointText(value);
  return far.empty() ? value.ToJson() : JsonText(far);
}

Json SecondsJson(double seconds) {
  constexpr double kSafeWhole = 9007199254740991;
  if (!std::isfinite(seconds)) return Json::parse(Value(seconds).ToJson());
  const bool isWhole = seconds == std::trunc(seconds) && std::abs(seconds) <= kSafeWhole;
  return isWhole ? Json(static_cast<std::int64_t>(seconds)) : Json(seconds);
}

// The parts of the value that its text leaves out.
Json DetailsOf(const Value& value) {
  Json details = Json::object();
  if (const std::optional<DateTime> point = PointOf(value)) details["serial"] = SerialOf(*point);
  if (value.Is<scriptwells::Link>()) details["caption"] = value.As<scriptwells::Link>().caption;
  if (!value.Is<Duration>()) return details;
  const auto span = value.As<Duration>();
  details["negative"] = span.negative;
  details["years"] = span.years;
  details["months"] = span.months;
  details["days"] = span.days;
  details["hours"] = span.hours;
  details["minutes"] = span.minutes;
  details["seconds"] = SecondsJson(span.seconds);
  return details;
}

std::string FormatJson(const Value& value) {
  const TypeRow& row = RowOf(value.type());
  const Json details = DetailsOf(value);
  const std::string more = details.empty() ? "}" : "," + JsonText(details).substr(1);
  return std::string(R"({"type":")") + row.name + R"(","value":)" + ValueJson(value) + R"(,"tag":)" +
         std::to_string(row.tag) + more + "\n";
}

std::string FormatCsv(const Value& value, const std::string& nullText) {
  return "value\r\n" + (value.IsEmpty() ? nullText : scriptwells::CsvOnlyField(TextOf(value), nullText)) +
         "\r\n";
}

}  // namespace

std::string TypeName(const Value& value) {
  return RowOf(value.type()).name;
}

std::string FormatAnswer(OutputFormat format, const Value& value, const std::string& nullText) {
  if (format == OutputFormat::kJson) return FormatJson(value);
  if (format == OutputFormat::kTable) return FormatTable({{"answer", TypeName(value), TextOf(value)}});
  if (format == OutputFormat::kCsv) return FormatCsv(value, nullText);
  return TextOf(value) + "\n";
}

std::vector<std::string> LossesOf(const Value& answer) {
  if (answer.IsEmpty())
    return {
        "the answer arrived as an empty value: a long, a type that the library does not read, or a URL "
        "without text"};
  if (HasWrappedCount(answer)) return {"a count of the duration does not fit 16 bits and arrived changed"};
  if (answer.type() == Type::kByte) return {"the answer arrived as 0, as every answer of the type byte does"};
  if (answer.type() == Type::kLink)
    return {"the link of a URL answer does not arrive; let the script answer with a string"};
  return {};
}

bool HasWrappedCount(const Value& value) {
  if (!value.Is<Duration>()) return false;
  const auto span = value.As<Duration>();
  return std::min({span.years, span.months, span.days, span.hours, span.minutes}) < 0;
}

}  // namespace qv::cli

#include "devservice/values/value_types.h"

#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

#include "devservice/values/date_text.h"
#include "devservice/values/duration_text.h"
#include "devservice/values/text_scanner.h"
#include "devservice/values/url_text.h"

namespace qv::devservice {
namespace {

constexpr std::int64_t kLongMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLongMax = std::numeric_limits<std::int64_t>::max();

// "float" is sent without a prefix: clients know the type under no other name.
constexpr ValueType kValueTypes[] = {
    {"byte", "xsd:byte", ValueKind::kInteger, -128, 127},
    {"short", "xsd:short", ValueKind::kInteger, -32768, 32767},
    {"int", "xsd:int", ValueKind::kInteger, -2147483648LL, 2147483647LL},
    {"long", "xsd:long", ValueKind::kInteger, kLongMin, kLongMax},
    {"boolean", "xsd:boolean", ValueKind::kBoolean, 0, 0},
    {"float", "float", ValueKind::kFloat, 0, 0},
    {"double", "xsd:double", ValueKind::kDouble, 0, 0},
    {"string", "xsd:string", ValueKind::kString, 0, 0},
    {"date", "xsd:date", ValueKind::kDate, 0, 0},
    {"time", "xsd:time", ValueKind::kTime, 0, 0},
    {"datetime", "xsd:dateTime", ValueKind::kDateTime, 0, 0},
    {"duration", "xsd:duration", ValueKind::kDuration, 0, 0},
    {"url", "sof:url", ValueKind::kUrl, 0, 0},
};

struct NamedNumber {
  const char* name;
  double value;
};

// The schema's spellings, and those of C runtimes, which clients print.
constexpr NamedNumber kNamedNumbers[] = {
    {"INF", HUGE_VAL},   {"-INF", -HUGE_VAL}, {"NaN", NAN},  {"inf", HUGE_VAL},
    {"-inf", -HUGE_VAL}, {"nan", NAN},        {"-nan", NAN},
};

std::string_view WithoutPlus(std::string_view text) {
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  return plus ? text.substr(1) : text;
}

bool NormaliseInteger(const ValueType& type, std::string_view text, std::string& result) {
  const std::string_view digits = WithoutPlus(Trim(text));
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc() || end != digits.data() + digits.size()) return false;
  result = std::to_string(value);
  return value >= type.least && value <= type.greatest;
}

bool NormaliseBoolean(std::string_view text, std::string& result) {
  const std::string_view word = Trim(text);
  const bool truth = word == "1" || word == "true";
  result = truth ? "true" : "false";
  return truth || word == "0" || word == "false";
}

bool NormaliseNumber(std::string_view text, std::string& result) {
  const std::string_view digits = WithoutPlus(Trim(text));
  for (const NamedNumber& named : kNamedNumbers) {
    if (digits == named.name) {
      result = FormatDouble(named.value);
      return true;
    }
  }
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(value)) return false;
  result = FormatDouble(value);
  return true;
}

bool NormaliseMoment(ValueKind kind, std::string_view text, std::string& result) {
  std::int64_t milliseconds = 0;
  if (!ParseMoment(kind, text, milliseconds)) return false;
  result = FormatMoment(kind, milliseconds);
  return true;
}

bool NormaliseDuration(std::string_view text, std::string& result) {
  Duration duration;
  if (!ParseDuration(text, duration)) return false;
  result = FormatDuration(duration);
  return true;
}

bool NormaliseUrl(std::string_view text, std::string& result) {
  UrlValue url;
  if (!ParseUrl(text, url)) return false;
  result = FormatUrl(url);
  return true;
}

// The texts of values that have no digits; null for the others.
const char* NameOfSpecial(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "INF" : "-INF";
  return nullptr;
}

}  // namespace

const ValueType* BeginValueTypes() {
  return std::begin(kValueTypes);
}
const ValueType* EndValueTypes() {
  return std::end(kValueTypes);
}

const ValueType* FindValueType(std::string_view name) {
  for (const ValueType& type : kValueTypes) {
    if (name == type.name) return &type;
  }
  return nullptr;
}

bool NormaliseText(const ValueType& type, std::string_view text, std::string& result) {
  switch (type.kind) {
    case ValueKind::kInteger:
      return NormaliseInteger(type, text, result);
    case ValueKind::kBoolean:
      return NormaliseBoolean(text, result);
    case ValueKind::kFloat:
    case ValueKind::kDouble:
      return NormaliseNumber(text, result);
    case ValueKind::kString:
      result = text;
      return true;
    case ValueKind::kDate:
    case ValueKind::kTime:
    case ValueKind::kDateTime:
      return NormaliseMoment(type.kind, text, result);
    case ValueKind::kDuration:
      return NormaliseDuration(text, result);
    case ValueKind::kUrl:
      return NormaliseUrl(text, result);
  }
  return false;
}

std::string FormatDouble(double value) {
  if (const char* name = NameOfSpecial(value)) return name;
  char buffer[64];
  return std::string(buffer, std::to_chars(std::begin(buffer), std::end(buffer), value).ptr);
}

std::string FormatFloat(float value) {
  if (const char* name = NameOfSpecial(static_cast<double>(value))) return name;
  char buffer[64];
  return std::string(buffer, std::to_chars(std::begin(buffer), std::end(buffer), value).ptr);
}

std::int64_t ReadInteger(std::string_view text) {
  std::int64_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

double ReadDouble(std::string_view text) {
  for (const NamedNumber& named : kNamedNumbers) {
    if (text == named.name) return named.value;
  }
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

bool ParseMoment(ValueKind kind, std::string_view text, std::int64_t& milliseconds) {
  if (kind == ValueKind::kDate) return ParseDate(text, milliseconds);
  if (kind == ValueKind::kTime) return ParseTime(text, milliseconds);
  return ParseDateTime(text, milliseconds);
}

std::string FormatMoment(ValueKind kind, std::int64_t milliseconds) {
  if (kind == ValueKind::kDate) return FormatDate(milliseconds);
  if (kind == ValueKind::kTime) return FormatTime(milliseconds);
  return FormatDateTime(milliseconds);
}

}  // namespace qv::devservice

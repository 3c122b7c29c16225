// Values of a type that is given by its name.
#include <utf8.h>

#include <charconv>
#include <cmath>

#include "face/text/failures.h"
#include "face/values/sent_form.h"
#include "face/values/whole_range.h"
#include "scriptwells/value.h"

namespace scriptwells {

namespace {

template <const WholeRange& kRange, class T>
Value ParseWhole(const std::string& text) {
  std::int64_t value = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, value);
  if (result.ec == std::errc::invalid_argument || result.ptr != end)
    RefuseConversion("'" + text + "' is not a whole number");
  if (result.ec == std::errc::result_out_of_range || value < kRange.least || value > kRange.greatest)
    RefuseRange(kRange, text);
  return static_cast<T>(value);
}

Value ParseBoolean(const std::string& text) {
  if (text == "true" || text == "1") return true;
  if (text == "false" || text == "0") return false;
  RefuseConversion("'" + text + "' is not a boolean (true or false)");
}

// Servers do not agree on a text for infinities and NaN.
template <class T>
Value ParseNumber(const std::string& text) {
  T value = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, value);
  if (result.ec == std::errc::invalid_argument || result.ptr != end)
    RefuseConversion("'" + text + "' is not a number");
  if (result.ec == std::errc::result_out_of_range)
    RefuseConversion(text + " is out of range for " + ToString(Value(value).type()));
  if (!std::isfinite(value)) RefuseConversion("'" + text + "' is not a finite number");
  return value;
}

Value ParseString(const std::string& text) {
  return text;
}

template <class T>
Value ParsePoint(const std::string& text) {
  return T::Parse(text);
}

// What exists, but does not travel, is refused with the text as it was given.
template <class T>
Value ParseSent(const std::string& text) {
  const T value = T::Parse(text);
  CheckSent(value, text);
  return value;
}

struct TypeRow {
  const char* name;
  Value (*parse)(const std::string& text);
};

constexpr TypeRow kTypes[] = {
    {"byte", ParseWhole<kByteRange, std::int8_t>},
    {"short", ParseWhole<kShortRange, std::int16_t>},
    {"int", ParseWhole<kIntRange, std::int32_t>},
    {"long", ParseWhole<kLongRange, std::int64_t>},
    {"boolean", ParseBoolean},
    {"float", ParseNumber<float>},
    {"double", ParseNumber<double>},
    {"string", ParseString},
    {"date", ParsePoint<Date>},
    {"time", ParsePoint<Time>},
    {"datetime", ParseSent<DateTime>},
    {"duration", ParseSent<Duration>},
};

// Types that only answers have.
struct AnswerOnlyRow {
  const char* name;
  const char* reason;
};

constexpr AnswerOnlyRow kAnswerOnly[] = {{"url", kLinkIsNotSent},
                                         {"link", kLinkIsNotSent},
                                         {"table", kTableIsNotSent},
                                         {"recordlist", kTableIsNotSent}};

std::string KnownTypes() {
  std::string names;
  for (const TypeRow& row : kTypes) names += (names.empty() ? "" : ", ") + std::string(row.name);
  return names;
}

const TypeRow& FindType(std::string_view name) {
  for (const TypeRow& row : kTypes)
    if (name == row.name) return row;
  for (const AnswerOnlyRow& row : kAnswerOnly)
    if (name == row.name) RefuseConversion(row.reason);
  RefuseConversion("unknown type '" + std::string(name) + "' (known: " + KnownTypes() + ")");
}

}  // namespace

Value Parse(std::string_view typeName, std::string_view text) {
  const TypeRow& type = FindType(typeName);
  if (!utf8::is_valid(text.begin(), text.end())) RefuseConversion(kNotUtf8);
  return type.parse(std::string(text));
}

}  // namespace scriptwells

#include "scriptwells/value.h"

#include <ostream>

#include "face/text/json_text.h"
#include "face/text/number_text.h"

namespace scriptwells {

namespace {

constexpr const char* kTypes[] = {"empty", "boolean",  "byte",     "short",  "int",
                                  "long",  "float",    "double",   "string", "date",
                                  "time",  "datetime", "duration", "link",   "table"};
static_assert(std::variant_size_v<Value::Sum> == std::size(kTypes), "one name for each type");

struct Text {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int8_t value) const { return std::to_string(value); }
  std::string operator()(std::int16_t value) const { return std::to_string(value); }
  std::string operator()(std::int32_t value) const { return std::to_string(value); }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(float value) const { return NumberText(value); }
  std::string operator()(double value) const { return NumberText(value); }
  std::string operator()(const std::string& value) const { return value; }
  template <class T>
  std::string operator()(const T& value) const {
    return value.ToString();
  }
};

struct Json {
  std::string operator()(std::monostate) const { return "null"; }
  std::string operator()(std::int64_t value) const { return JsonNumber(value); }
  std::string operator()(float value) const { return JsonNumber(value); }
  std::string operator()(double value) const { return JsonNumber(value); }
  std::string operator()(const std::string& value) const { return JsonText(value); }
  std::string operator()(const Link& value) const { return JsonText(value.url); }
  std::string operator()(const Table& value) const { return value.ToJson(); }
  template <class T>
  std::string operator()(const T& value) const {
    const std::string text = Text()(value);
    return std::is_arithmetic_v<T> ? text : '"' + text + '"';
  }
};

}  // namespace

const char* ToString(Type type) noexcept {
  return kTypes[static_cast<std::size_t>(type)];
}

std::string Value::ToString() const {
  return Visit(Text());
}

std::string Value::ToJson() const {
  return Visit(Json());
}

}  // namespace scriptwells

// What Value::As and the makers of numbers do.
#include <cfloat>
#include <cmath>

#include "face/text/failures.h"
#include "face/text/number_text.h"
#include "face/text/short_quote.h"
#include "scriptwells/value.h"

namespace scriptwells {

namespace {

constexpr double kTwoTo63 = 9223372036854775808.0;

bool IsNumber(Type type) {
  return type >= Type::kByte && type <= Type::kDouble;
}

// "the int 300", "the string 'abc'".
std::string Described(const Value& value) {
  if (value.IsEmpty()) return "an empty value";
  if (value.Is<Table>()) return "a table";
  const bool isText = value.Is<std::string>() || value.Is<Link>();
  return std::string("the ") + ToString(value.type()) + " " +
         (isText ? ShortQuote(value.ToString()) : value.ToString());
}

// The name of an integer of that many bytes.
std::string WholeName(std::size_t bytes, const char* sign) {
  const std::string bits = std::to_string(bytes * 8) + "-bit integer";
  if (*sign != '\0') return sign + bits;
  return (bytes == 1 ? "an " : "a ") + bits;
}

// The number as a whole one, where it is one that 64 bits hold.
struct WholeNumber {
  template <class T>
  std::optional<std::int64_t> operator()(const T& value) const {
    if constexpr (std::is_same_v<T, bool> || !std::is_arithmetic_v<T>) {
      return std::nullopt;
    } else if constexpr (std::is_integral_v<T>) {
      return value;
    } else {
      const double number = value;
      if (!(number >= -kTwoTo63 && number < kTwoTo63 && number == std::trunc(number))) return std::nullopt;
      return static_cast<std::int64_t>(number);
    }
  }
};

// The number as a double, where it is one that a double holds.
struct DoubleNumber {
  template <class T>
  std::optional<double> operator()(const T& value) const {
    if constexpr (std::is_same_v<T, bool> || !std::is_arithmetic_v<T>) {
      return std::nullopt;
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
      const auto number = static_cast<double>(value);
      if (number >= kTwoTo63 || static_cast<std::int64_t>(number) != value) return std::nullopt;
      return number;
    } else {
      return value;
    }
  }
};

std::string NotA(const Value& value, const std::string& name) {
  return (IsNumber(value.type()) ? "does not fit " : "is not ") + name;
}

bool FitsFloat(double number) {
  if (!std::isfinite(number)) return true;
  return std::abs(number) <= FLT_MAX && static_cast<double>(static_cast<float>(number)) == number;
}

// For messages.
template <class T>
const char* Wanted(const T& content) {
  return ToString(Value(content).type());
}

template <class T>
const T* HeldBy(const Value& value) {
  return value.Visit([](const auto& content) -> const T* {
    if constexpr (std::is_same_v<std::decay_t<decltype(content)>, T>) return &content;
    return nullptr;
  });
}

// False for a value that is not of that type, and does not become it without a loss.
template <class T>
bool Take(const Value& value, T& to) {
  const T* const held = HeldBy<T>(value);
  if (held != nullptr) to = *held;
  return held != nullptr;
}

bool Take(const Value& value, double& to) {
  const std::optional<double> number = value.Visit(DoubleNumber());
  to = number.value_or(0);
  return number.has_value();
}

bool Take(const Value& value, float& to) {
  double number = 0;
  if (!Take(value, number) || !FitsFloat(number)) return false;
  to = static_cast<float>(number);
  return true;
}

bool Take(const Value& value, Date& to) {
  const DateTime* const point = HeldBy<DateTime>(value);
  const Date* const date = point != nullptr && point->time == Time() ? &point->date : HeldBy<Date>(value);
  if (date != nullptr) to = *date;
  return date != nullptr;
}

bool Take(const Value& value, DateTime& to) {
  if (const Date* const date = HeldBy<Date>(value)) {
    to = {*date, Time()};
    return true;
  }
  const DateTime* const point = HeldBy<DateTime>(value);
  if (point != nullptr) to = *point;
  return point != nullptr;
}

}  // namespace

void Value::Refuse(const std::string& why) const {
  RefuseConversion(Described(*this) + " " + why);
}

std::int64_t Value::Whole(std::size_t bytes) const {
  const std::int64_t greatest = INT64_MAX >> (64 - 8 * bytes);
  const std::optional<std::int64_t> number = Visit(WholeNumber());
  if (!number || *number > greatest || *number < -greatest - 1) Refuse(NotA(*this, WholeName(bytes, "")));
  return *number;
}

std::uint64_t Value::Unsigned(std::size_t bytes) const {
  const std::uint64_t greatest = UINT64_MAX >> (64 - 8 * bytes);
  const std::optional<std::int64_t> number = Visit(WholeNumber());
  if (number && *number >= 0 && static_cast<std::uint64_t>(*number) <= greatest)
    return static_cast<std::uint64_t>(*number);
  // The upper half of 64 bits, where every number that a double holds is whole.
  const std::optional<double> large = Visit(DoubleNumber());
  if (bytes < 8 || !large || !(*large >= kTwoTo63 && *large < 2 * kTwoTo63))
    Refuse(NotA(*this, WholeName(bytes, "an unsigned ")));
  return static_cast<std::uint64_t>(*large);
}

template <class T>
void Value::Read(T& to) const {
  if (Take(*this, to)) return;
  const std::string wanted = std::string("a ") + Wanted(to);
  Refuse(std::is_floating_point_v<T> ? NotA(*this, wanted) : "is not " + wanted);
}

template void Value::Read(bool& to) const;
template void Value::Read(float& to) const;
template void Value::Read(double& to) const;
template void Value::Read(std::string& to) const;
template void Value::Read(Date& to) const;
template void Value::Read(Time& to) const;
template void Value::Read(DateTime& to) const;
template void Value::Read(Duration& to) const;
template void Value::Read(Link& to) const;
template void Value::Read(Table& to) const;

}  // namespace scriptwells

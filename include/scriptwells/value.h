// One value: a script's answer, a cell, or an argument. Texts are UTF-8. Copies of a table share it; all else
// is copied. Any number of threads may read a value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "scriptwells/error.h"
#include "scriptwells/export.h"
#include "scriptwells/table.h"
#include "scriptwells/types.h"

namespace scriptwells {

// In the order of Value::Sum.
enum class Type : int {
  kEmpty,  // no value; also what arrives of a long and of a type that is not read
  kBoolean,
  kByte,  // arrives as 0, but in a table
  kShort,
  kInt,
  kLong,   // is sent, but arrives empty
  kFloat,  // is sent with 6 significant digits, as a double
  kDouble,
  kString,
  kDate,
  kTime,
  kDateTime,
  kDuration,
  kLink,
  kTable,
};

// "empty", "boolean", ..., "datetime", "duration", "link", "table"
SCRIPTWELLS_API const char* ToString(Type type) noexcept;

namespace detail {

template <class T, class... Others>
constexpr bool kIsOneOf = (std::is_same_v<T, Others> || ...);
template <class T>
constexpr bool kIsNumber =
    std::is_arithmetic_v<T> && !kIsOneOf<T, char, wchar_t, char16_t, char32_t, long double>;

}  // namespace detail

class SCRIPTWELLS_API Value {
 public:
  using Sum = std::variant<std::monostate, bool, std::int8_t, std::int16_t, std::int32_t, std::int64_t, float,
                           double, std::string, Date, Time, DateTime, Duration, Link, Table>;

  Value() noexcept = default;  // empty
  // From every arithmetic type but characters. A whole number takes the smallest of int and long that holds
  // its type: short is kShort, signed char kByte, unsigned is kLong. Throws ConversionError beyond 63 bits.
  template <class T, std::enable_if_t<detail::kIsNumber<T>, int> = 0>
  Value(T value) : sum_(Natural(value)) {}
  Value(const char* text) : sum_(std::string(text)) {}
  Value(std::string_view text) : sum_(std::string(text)) {}
  Value(std::string text) : sum_(std::move(text)) {}
  Value(Date value) : sum_(value) {}
  Value(Time value) : sum_(value) {}
  Value(DateTime value) : sum_(value) {}
  Value(Duration value) : sum_(value) {}
  Value(Link value) : sum_(std::move(value)) {}
  Value(Table value) : sum_(std::move(value)) {}
  template <class D>
  Value(std::chrono::time_point<std::chrono::system_clock, D> point) : sum_(DateTime::From(point)) {}
  Value(std::nullptr_t) = delete;

  Type type() const noexcept { return static_cast<Type>(sum_.index()); }
  bool IsEmpty() const noexcept { return type() == Type::kEmpty; }
  // Whether the value has exactly this type of the sum.
  template <class T>
  bool Is() const noexcept {
    return std::holds_alternative<T>(sum_);
  }

  // The value as a T, where nothing is lost: numbers that T represents exactly, a date as DateTime at
  // midnight, a DateTime at midnight as Date, points in time as std::chrono time points, durations without
  // years and months as std::chrono durations; std::optional<T> is empty for an empty value. Texts and
  // numbers are not converted to each other. Otherwise throws ConversionError, which names both types and the
  // value.
  template <class T>
  T As() const&;
  template <class T>
  T As() &&;  // moves a text
  // `fallback` for an empty value.
  template <class T>
  T ValueOr(T fallback) const {
    return IsEmpty() ? std::move(fallback) : As<T>();
  }
  Table AsTable() const;

  // Calls `visitor` with the content: std::monostate for an empty value.
  template <class Visitor>
  decltype(auto) Visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), sum_);
  }

  // For people: "42", "1.5", "true", "2024-03-05", a table in aligned columns, nothing for an empty value.
  std::string ToString() const;
  // One JSON value (RFC 8259): numbers, booleans, texts, null, a table as Table::ToJson. Points in time,
  // durations and links are texts. NaN and infinities are "NaN", "INF", "-INF"; whole numbers beyond 53 bits
  // are texts.
  std::string ToJson() const;

  // Same type, same content; a NaN differs from itself.
  friend bool operator==(const Value& a, const Value& b) { return a.sum_ == b.sum_; }
  friend bool operator!=(const Value& a, const Value& b) { return !(a == b); }

 private:
  template <class T>
  static Sum Natural(T value);
  static std::int64_t Signed(std::uint64_t value);
  // All throw ConversionError for a value that does not fit.
  [[noreturn]] void Refuse(const std::string& why) const;
  std::int64_t Whole(std::size_t bytes) const;
  std::uint64_t Unsigned(std::size_t bytes) const;
  template <class Span>
  Span Exactly(std::chrono::milliseconds span) const;
  void Read(bool& to) const;
  void Read(float& to) const;
  void Read(double& to) const;
  void Read(std::string& to) const;
  void Read(Date& to) const;
  void Read(Time& to) const;
  void Read(DateTime& to) const;
  void Read(Duration& to) const;
  void Read(Link& to) const;
  void Read(Table& to) const;

  Sum sum_;
};

// Values of a chosen type. Throw ConversionError for a number that does not fit.
SCRIPTWELLS_API Value Byte(std::int64_t value);
SCRIPTWELLS_API Value Short(std::int64_t value);
SCRIPTWELLS_API Value Int(std::int64_t value);
SCRIPTWELLS_API Value Long(std::int64_t value);
SCRIPTWELLS_API Value Float(double value);
SCRIPTWELLS_API Value Double(double value);
// Parses `text` strictly as the type of that name: byte, short, int, long, boolean, float, double, string,
// date, time, datetime, duration. Throws ConversionError with the reason, also for what cannot be sent.
SCRIPTWELLS_API Value Parse(std::string_view typeName, std::string_view text);
// What sending would change, one sentence each, such as "travels with 6 significant digits". Often none.
SCRIPTWELLS_API std::vector<std::string> LossesOnTheWire(const Value& value);
// The number below this library of a date, time or datetime: days since 1899-12-30. Otherwise throws as `As`.
SCRIPTWELLS_API double SerialOf(const Value& value);

}  // namespace scriptwells

#include "scriptwells/value_templates.h"

// SPDX-License-Identifier: Apache-2.0
// One value: a script's answer, a cell, or an argument. Texts are UTF-8. Copies of a table share it; all else is
// copied. Any number of threads may read a value.
//
// A table that a script answered with is read in place: rows and cells are views that share its ownership, so each of
// them is valid for as long as it exists. Nothing in it changes; any number of threads may read it.
//
//   for (const auto& row : table)
//     std::cout << row["city"].As<std::string>() << " " << row[1].As<int>() << "\n";
//   for (auto [city, people] : table.As<std::string, std::optional<int>>()) ...
#pragma once

#include <iterator>
#include <limits>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "scriptwells/types.h"

namespace scriptwells {

class Value;
class TableData;  // the cells; private to the library

// In the order of Value::Sum.
enum class Type : int {
  kEmpty,  // no value; also what arrives of a long and of a type that is not read
  kBoolean,
  kByte,  // arrives as 0, but in a table
  kShort,
  kInt,
  kLong,    // is sent, but arrives empty
  kFloat,   // is sent with 6 significant digits, as a double
  kDouble,  // the same: an argument of 1234567.0 arrives as 1234570
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

struct Column {
  std::string name;
  // Of the cells that are not empty. kEmpty for a type that is not read (such as long and float). Addresses are
  // kString, or links without content (kLink).
  Type type{};
  std::string typeName;  // "string", "boolean", "double", "int", "url", "blob", ..., "unknown"
};

// One cell. Empty if its row does not have it, or if its type is not read. Null on the server arrives as 0, false or
// an empty text.
class SCRIPTWELLS_API Cell {
 public:
  bool IsEmpty() const noexcept;
  Value Get() const;
  // As those of Value. An error names the column and the row (from 0, as Row::Index), too.
  template <class T> T As() const;
  template <class T> T ValueOr(T fallback) const;
  std::string ToString() const;

 private:
  friend class Row;
  Cell(std::shared_ptr<const TableData> data, std::size_t row, std::size_t column) noexcept
      : data_(std::move(data)), row_(row), column_(column) {}
  [[noreturn]] void Rethrow() const;  // in a catch block

  std::shared_ptr<const TableData> data_;
  std::size_t row_, column_;
};

class SCRIPTWELLS_API Row {
 public:
  // By name, the first of several, or by index. Throw Error, which names the columns, for one that is not there.
  Cell operator[](std::string_view column) const;
  template <class Index, class = std::enable_if_t<std::is_integral_v<Index>>> Cell operator[](Index column) const {
    return At(static_cast<std::size_t>(column));
  }
  Cell At(std::size_t column) const;
  std::size_t size() const noexcept;  // columns
  std::size_t Index() const noexcept { return index_; }

 private:
  friend class Table;
  Row(std::shared_ptr<const TableData> data, std::size_t index) noexcept : data_(std::move(data)), index_(index) {}

  std::shared_ptr<const TableData> data_;
  std::size_t index_;
};

// For range-for: `Content` makes the element of an index.
template <class Content> class IndexIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = decltype(std::declval<const Content&>().At(std::size_t{}));
  using reference = value_type;
  using pointer = const value_type*;
  using difference_type = std::ptrdiff_t;

  IndexIterator(Content content, std::size_t index) : content_(std::move(content)), index_(index) {}
  value_type operator*() const { return content_.At(index_); }
  IndexIterator& operator++() { return ++index_, *this; }
  bool operator==(const IndexIterator& other) const noexcept { return index_ == other.index_; }
  bool operator!=(const IndexIterator& other) const noexcept { return index_ != other.index_; }

 private:
  Content content_;
  std::size_t index_;
};

template <class... T> class TypedRows;

class SCRIPTWELLS_API Table {
 public:
  using const_iterator = IndexIterator<Table>;

  Table();  // without rows and columns

  const std::vector<Column>& Columns() const noexcept;
  std::size_t size() const noexcept;  // rows
  bool empty() const noexcept { return size() == 0; }
  Row operator[](std::size_t row) const;  // throws Error for a row that is not there
  Row At(std::size_t row) const { return (*this)[row]; }
  const_iterator begin() const { return {*this, 0}; }
  const_iterator end() const { return {*this, size()}; }

  std::size_t IndexOf(std::string_view column) const;  // throws as Row
  // The values of a column; std::optional for columns with empty cells.
  template <class T> std::vector<T> ColumnAs(std::string_view column) const;
  // Rows as tuples: of the named columns, or of all in their order. Throws Error unless there is one type for each
  // column.
  template <class... T, class... Name> TypedRows<T...> As(const Name&... columns) const;

  // RFC 4180 in UTF-8: names, then rows, line ends CR LF. `null`, which must not need quotes, is written for empty
  // cells; a text that is the same is in quotes. A stream that fails ends the writing.
  void WriteCsv(std::ostream& out, std::string_view null = {}) const;
  std::string ToCsv(std::string_view null = {}) const;
  // {"columns":[{"name":"a","displayName":"a","type":"int"}],"rows":[[5],[null]]}; cells as Value::ToJson.
  void WriteJson(std::ostream& out) const;
  std::string ToJson() const;
  // Aligned columns for people, with names as heads; without a line end after the last row.
  std::string ToString() const;

  // Cell by cell, and the same columns.
  friend SCRIPTWELLS_API bool operator==(const Table& a, const Table& b);
  friend bool operator!=(const Table& a, const Table& b) { return !(a == b); }

 private:
  friend class TableAccess;
  explicit Table(std::shared_ptr<const TableData> data) noexcept : data_(std::move(data)) {}
  [[noreturn]] void RefuseTypes(std::size_t types) const;

  std::shared_ptr<const TableData> data_;  // null: no rows and columns
};

// Rows as tuples of T, for range-for with structured bindings.
template <class... T> class TypedRows {
 public:
  TypedRows(Table table, std::vector<std::size_t> columns) : table_(std::move(table)), columns_(std::move(columns)) {}
  std::size_t size() const noexcept { return table_.size(); }
  std::tuple<T...> At(std::size_t row) const { return Make(table_[row], std::index_sequence_for<T...>()); }
  IndexIterator<TypedRows> begin() const { return {*this, 0}; }
  IndexIterator<TypedRows> end() const { return {*this, size()}; }

 private:
  template <std::size_t... I> std::tuple<T...> Make(const Row& row, std::index_sequence<I...>) const {
    return {row[columns_[I]].template As<T>()...};
  }

  Table table_;
  std::vector<std::size_t> columns_;
};

namespace detail {

template <class T, class... Others> constexpr bool kIsOneOf = (std::is_same_v<T, Others> || ...);
template <class T> constexpr bool kIsContent = kIsOneOf<T, std::string, Date, Time, DateTime, Duration, Link, Table>;
template <class T> constexpr bool kIsNumber =
    std::is_arithmetic_v<T> && !kIsOneOf<T, char, wchar_t, char16_t, char32_t, long double>;

template <class T> struct IsOptional : std::false_type {};
template <class T> struct IsOptional<std::optional<T>> : std::true_type {};
template <class T> struct IsTimePoint : std::false_type {};
template <class D> struct IsTimePoint<std::chrono::time_point<std::chrono::system_clock, D>> : std::true_type {};
template <class T> struct IsSpan : std::false_type {};
template <class R, class P> struct IsSpan<std::chrono::duration<R, P>> : std::true_type {};

}  // namespace detail

class SCRIPTWELLS_API Value {
 public:
  using Sum = std::variant<std::monostate, bool, std::int8_t, std::int16_t, std::int32_t, std::int64_t, float, double,
                           std::string, Date, Time, DateTime, Duration, Link, Table>;

  Value() noexcept = default;  // empty
  // From every arithmetic type but characters: signed char is kByte, short kShort, int and smaller unsigned types
  // kInt, all other whole numbers kLong. Throws ConversionError beyond 63 bits.
  template <class T, std::enable_if_t<detail::kIsNumber<T>, int> = 0> Value(T value) : sum_(Natural(value)) {}
  Value(const char* text) : sum_(std::string(text)) {}
  Value(std::string_view text) : sum_(std::string(text)) {}
  template <class T, std::enable_if_t<detail::kIsContent<T>, int> = 0> Value(T value) : sum_(std::move(value)) {}
  template <class D> Value(std::chrono::time_point<std::chrono::system_clock, D> point) : sum_(DateTime::From(point)) {}
  Value(std::nullptr_t) = delete;

  Type type() const noexcept { return static_cast<Type>(sum_.index()); }
  bool IsEmpty() const noexcept { return type() == Type::kEmpty; }
  // Whether the value has exactly this type of the sum.
  template <class T> bool Is() const noexcept { return std::holds_alternative<T>(sum_); }

  // The value as a T, where nothing is lost: numbers that T represents exactly, a date as DateTime at midnight, a
  // DateTime at midnight as Date, points in time as std::chrono time points, durations without years and months as
  // std::chrono durations; std::optional<T> is empty for an empty value. Texts and numbers are not converted to each
  // other. Otherwise throws ConversionError, which names both types and the value.
  template <class T> T As() const&;
  template <class T> T As() &&;  // moves a text
  // `fallback` for an empty value.
  template <class T> T ValueOr(T fallback) const { return IsEmpty() ? std::move(fallback) : As<T>(); }
  Table AsTable() const;

  // Calls `visitor` with the content: std::monostate for an empty value.
  template <class Visitor> decltype(auto) Visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), sum_);
  }

  // For people: "42", "1.5", "true", "2024-03-05", a table in aligned columns, nothing for an empty value.
  std::string ToString() const;
  // One JSON value (RFC 8259): numbers, booleans, texts, null, a table as Table::ToJson. Points in time, durations
  // and links are texts. NaN and infinities are "NaN", "INF", "-INF"; whole numbers beyond 53 bits are texts.
  std::string ToJson() const;

  // Same type, same content; a NaN differs from itself.
  friend bool operator==(const Value& a, const Value& b) { return a.sum_ == b.sum_; }
  friend bool operator!=(const Value& a, const Value& b) { return !(a == b); }

 private:
  template <class T> static Sum Natural(T value);
  static std::int64_t Signed(std::uint64_t value);
  // All throw ConversionError for a value that does not fit.
  [[noreturn]] void Refuse(const std::string& why) const;
  std::int64_t Whole(std::size_t bytes) const;
  std::uint64_t Unsigned(std::size_t bytes) const;
  template <class Span> Span Exactly(std::chrono::milliseconds span) const;
  template <class T> void Read(T& to) const;  // for all other types of As

  Sum sum_;
};

// Values of a chosen type. Throw ConversionError for a number that does not fit.
SCRIPTWELLS_API Value Byte(std::int64_t value);
SCRIPTWELLS_API Value Short(std::int64_t value);
SCRIPTWELLS_API Value Int(std::int64_t value);
SCRIPTWELLS_API Value Long(std::int64_t value);
SCRIPTWELLS_API Value Float(double value);
SCRIPTWELLS_API Value Double(double value);
// Parses `text` strictly as the type of that name: byte, short, int, long, boolean, float, double, string, date,
// time, datetime, duration. Throws ConversionError with the reason, also for what cannot be sent.
SCRIPTWELLS_API Value Parse(std::string_view typeName, std::string_view text);
// What sending would change, one sentence each, such as "travels with 6 significant digits". Often none.
SCRIPTWELLS_API std::vector<std::string> LossesOnTheWire(const Value& value);
// The number below this library of a date, time or datetime: days since 1899-12-30. Otherwise throws as `As`.
SCRIPTWELLS_API double SerialOf(const Value& value);

template <class T> Value::Sum Value::Natural(T value) {
  if constexpr (detail::kIsOneOf<T, bool, signed char, short, int, float, double>)
    return value;
  else if constexpr (std::is_unsigned_v<T> && sizeof(T) >= sizeof(int))
    return Signed(value);
  else
    return std::conditional_t<std::is_signed_v<T>, std::int64_t, std::int32_t>{value};
}

template <class T> T Value::As() const& {
  if constexpr (detail::IsOptional<T>::value) {
    if (IsEmpty()) return std::nullopt;
    return As<typename T::value_type>();
  } else if constexpr (std::is_same_v<T, Value>) {
    return *this;
  } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
    static_assert(detail::kIsNumber<T>, "a character is no number: use std::string or int");
    if constexpr (std::is_unsigned_v<T>)
      return static_cast<T>(Unsigned(sizeof(T)));
    else
      return static_cast<T>(Whole(sizeof(T)));
  } else if constexpr (detail::IsTimePoint<T>::value) {
    return T(Exactly<typename T::duration>(As<DateTime>().ToTimePoint().time_since_epoch()));
  } else if constexpr (detail::IsSpan<T>::value) {
    return Exactly<T>(As<Duration>().ToMilliseconds());
  } else {
    static_assert(detail::kIsContent<T> || detail::kIsOneOf<T, bool, float, double>,
                  "not a type that values have: see Value::As");
    T result{};
    Read(result);
    return result;
  }
}

template <class T> T Value::As() && {
  if constexpr (detail::kIsOneOf<T, bool, std::int32_t, double, std::string>)
    if (T* const held = std::get_if<T>(&sum_)) return std::move(*held);
  return std::as_const(*this).template As<T>();
}

template <class Span> Span Value::Exactly(std::chrono::milliseconds span) const {
  const auto converted = [span] { return std::chrono::duration_cast<Span>(span); };
  if constexpr (!std::chrono::treat_as_floating_point_v<typename Span::rep>) {
    using Wide = std::chrono::duration<long double, std::milli>;
    if (Wide(span) < Wide(Span::min()) || Wide(span) > Wide(Span::max()) ||
        std::chrono::duration_cast<std::chrono::milliseconds>(converted()) != span)
      Refuse("does not fit the unit that was asked for");
  }
  return converted();
}

inline Table Value::AsTable() const { return As<Table>(); }

template <class T> T Cell::As() const {
  try {
    return Get().template As<T>();
  } catch (const ConversionError&) { Rethrow(); }
}

template <class T> T Cell::ValueOr(T fallback) const { return IsEmpty() ? std::move(fallback) : As<T>(); }

template <class T> std::vector<T> Table::ColumnAs(std::string_view column) const {
  const std::size_t index = IndexOf(column);
  std::vector<T> values;
  values.reserve(size());
  for (std::size_t row = 0; row < size(); ++row) values.push_back((*this)[row][index].As<T>());
  return values;
}

template <class... T, class... Name> TypedRows<T...> Table::As(const Name&... columns) const {
  static_assert(sizeof...(Name) == 0 || sizeof...(Name) == sizeof...(T), "one column for each type");
  std::vector<std::size_t> indexes{IndexOf(columns)...};
  if constexpr (sizeof...(Name) == 0) {
    if (Columns().size() != sizeof...(T)) RefuseTypes(sizeof...(T));
    for (std::size_t i = 0; i < sizeof...(T); ++i) indexes.push_back(i);
  }
  return TypedRows<T...>(*this, std::move(indexes));
}

}  // namespace scriptwells

// A table that a script answered with, read in place: rows and cells are views that share its ownership, so
// each of them is valid for as long as it exists. Nothing in it changes; any number of threads may read it.
//
//   for (const auto& row : table)
//     std::cout << row["city"].As<std::string>() << " " << row[1].As<int>() << "\n";
//   for (auto [city, people] : table.As<std::string, std::optional<int>>()) ...
#pragma once

#include <cstddef>
#include <iosfwd>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "scriptwells/export.h"

namespace scriptwells {

class Value;
class Row;
class TableData;  // the cells; private to the library
enum class Type : int;

struct Column {
  std::string name;
  // Of the cells that are not empty. kEmpty for a type that is not read (such as long and float). Addresses
  // are kString, or links without content (kLink).
  Type type{};
  std::string typeName;  // "string", "boolean", "double", "int", "url", "blob", ..., "unknown"
};

// One cell. Empty if its row does not have it, or if its type is not read. Null on the server arrives as 0,
// false or an empty text.
class SCRIPTWELLS_API Cell {
 public:
  bool IsEmpty() const noexcept;
  Value Get() const;
  // As those of Value. An error names the column and the row (from 0, as Row::Index), too.
  template <class T>
  T As() const;
  template <class T>
  T ValueOr(T fallback) const;
  std::string ToString() const;

 private:
  friend class Row;
  Cell(std::shared_ptr<const TableData> data, std::size_t row, std::size_t column) noexcept
      : data_(std::move(data)), row_(row), column_(column) {}
  [[noreturn]] void Rethrow() const;  // in a catch block

  std::shared_ptr<const TableData> data_;
  std::size_t row_;
  std::size_t column_;
};

class SCRIPTWELLS_API Row {
 public:
  // By name, the first of several, or by index. Throw Error, which names the columns, for one that is not
  // there.
  Cell operator[](std::string_view column) const;
  template <class Index, class = std::enable_if_t<std::is_integral_v<Index>>>
  Cell operator[](Index column) const {
    return At(static_cast<std::size_t>(column));
  }
  Cell At(std::size_t column) const;
  std::size_t size() const noexcept;  // columns
  std::size_t Index() const noexcept { return index_; }

 private:
  friend class Table;
  Row(std::shared_ptr<const TableData> data, std::size_t index) noexcept
      : data_(std::move(data)), index_(index) {}

  std::shared_ptr<const TableData> data_;
  std::size_t index_;
};

// For range-for: `Content` makes the element of an index.
template <class Content>
class IndexIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = decltype(std::declval<const Content&>().At(std::size_t{}));
  using difference_type = std::ptrdiff_t;
  using pointer = const value_type*;
  using reference = value_type;

  IndexIterator(Content content, std::size_t index) : content_(std::move(content)), index_(index) {}
  value_type operator*() const { return content_.At(index_); }
  IndexIterator& operator++() {
    ++index_;
    return *this;
  }
  bool operator==(const IndexIterator& other) const noexcept { return index_ == other.index_; }
  bool operator!=(const IndexIterator& other) const noexcept { return index_ != other.index_; }

 private:
  Content content_;
  std::size_t index_;
};

template <class... T>
class TypedRows;

class SCRIPTWELLS_API Table {
 public:
  using const_iterator = IndexIterator<Table>;

  Table();  // without rows and columns

  const std::vector<Column>& Columns() const noexcept;
  std::size_t size() const noexcept;  // rows
  bool empty() const noexcept { return size() == 0; }
  // Throws Error for a row that is not there.
  Row operator[](std::size_t row) const;
  Row At(std::size_t row) const { return (*this)[row]; }
  const_iterator begin() const { return {*this, 0}; }
  const_iterator end() const { return {*this, size()}; }

  // Throws as Row.
  std::size_t IndexOf(std::string_view column) const;
  // The values of a column; std::optional for columns with empty cells.
  template <class T>
  std::vector<T> ColumnAs(std::string_view column) const;
  // Rows as tuples: of the named columns, or of all in their order. Throws Error unless there is one type for
  // each column.
  template <class... T, class... Name>
  TypedRows<T...> As(const Name&... columns) const;

  // RFC 4180 in UTF-8: names, then rows, line ends CR LF. `null`, which must not need quotes, is written for
  // empty cells; a text that is the same is in quotes. A stream that fails ends the writing.
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
template <class... T>
class TypedRows {
 public:
  TypedRows(Table table, std::vector<std::size_t> columns)
      : table_(std::move(table)), columns_(std::move(columns)) {}
  std::size_t size() const noexcept { return table_.size(); }
  std::tuple<T...> At(std::size_t row) const { return Make(table_[row], std::index_sequence_for<T...>()); }
  IndexIterator<TypedRows> begin() const { return {*this, 0}; }
  IndexIterator<TypedRows> end() const { return {*this, size()}; }

 private:
  template <std::size_t... I>
  std::tuple<T...> Make(const Row& row, std::index_sequence<I...>) const {
    return {row[columns_[I]].template As<T>()...};
  }

  Table table_;
  std::vector<std::size_t> columns_;
};

}  // namespace scriptwells

#include "scriptwells/value.h"  // the templates above need it

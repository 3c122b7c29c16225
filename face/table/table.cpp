#include "scriptwells/value.h"

#include <algorithm>

#include "face/table/table_data.h"
#include "face/table/table_messages.h"

namespace scriptwells {

namespace {

// The data of a table without any needs memory once.
const TableData& Of(const std::shared_ptr<const TableData>& data) {
  static const TableData none;
  return data ? *data : none;
}

bool IsSame(const Column& a, const Column& b) {
  return a.name == b.name && a.type == b.type && a.typeName == b.typeName;
}

bool HaveSameColumns(const TableData& a, const TableData& b) {
  return std::equal(a.Columns().begin(), a.Columns().end(), b.Columns().begin(), b.Columns().end(), IsSame);
}

bool HaveSameCells(const TableData& a, const TableData& b, std::size_t row) {
  for (std::size_t column = 0; column < a.Columns().size(); ++column)
    if (a.Get(row, column) != b.Get(row, column)) return false;
  return true;
}

}  // namespace

bool Cell::IsEmpty() const noexcept {
  return data_->IsEmpty(row_, column_);
}

Value Cell::Get() const {
  return data_->Get(row_, column_);
}

std::string Cell::ToString() const {
  return Get().ToString();
}

void Cell::Rethrow() const {
  try {
    throw;
  } catch (const ConversionError& error) {
    throw ConversionError(error.phase(), error.message() + InCell(data_->Columns()[column_].name, row_),
                          error.details());
  }
}

Cell Row::operator[](std::string_view column) const {
  return {data_, index_, data_->IndexOf(column)};
}

Cell Row::At(std::size_t column) const {
  data_->CheckColumn(column);
  return {data_, index_, column};
}

std::size_t Row::size() const noexcept {
  return data_->Columns().size();
}

Table::Table() = default;

const std::vector<Column>& Table::Columns() const noexcept {
  static const std::vector<Column> none;
  return data_ != nullptr ? data_->Columns() : none;
}

std::size_t Table::size() const noexcept {
  return data_ != nullptr ? data_->Rows() : 0;
}

Row Table::operator[](std::size_t row) const {
  Of(data_).CheckRow(row);
  return {data_, row};
}

std::size_t Table::IndexOf(std::string_view column) const {
  return Of(data_).IndexOf(column);
}

void Table::RefuseTypes(std::size_t types) const {
  throw Error(Phase::kConversion,
              CountOf(types, "type") + " for a table with " + CountOf(Columns().size(), "column"));
}

bool operator==(const Table& a, const Table& b) {
  const TableData& first = Of(a.data_);
  const TableData& second = Of(b.data_);
  if (!HaveSameColumns(first, second) || first.Rows() != second.Rows()) return false;
  for (std::size_t row = 0; row < first.Rows(); ++row)
    if (!HaveSameCells(first, second, row)) return false;
  return true;
}

}  // namespace scriptwells

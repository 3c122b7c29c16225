#include "face/table/table_data.h"

#include <utility>

#include "components/recordlist/record_list_object.h"
#include "face/table/column_kind.h"
#include "face/table/table_messages.h"
#include "face/text/short_quote.h"
#include "face/values/wire_value.h"

namespace scriptwells {

namespace {

constexpr std::size_t kMostNames = 12;

bool HoldsObject(const qv::Variant& cell) noexcept {
  return cell.Tag() == qv::VT_UNKNOWN || cell.Tag() == qv::VT_DISPATCH;
}

}  // namespace

TableData::TableData(qv::IRecordListPtr list) {
  for (ListColumn& column : ReadColumns(list.get())) AddColumn(std::move(column));
  byName_ = NameIndex(Names());
  if (qv::CellTable* const inPlace = qv::CellsOf(list.get())) {
    cells_ = inPlace;
    list_ = std::move(list);
  } else {
    copies_ = ReadCells(list.get(), columns_.size());
  }
}

void TableData::AddColumn(ListColumn column) {
  const ColumnKind& kind = KindOf(column.type);
  columnTypes_.push_back(column.type);
  columns_.push_back({std::move(column.name), kind.type, kind.name});
}

std::vector<std::string_view> TableData::Names() const {
  std::vector<std::string_view> names;
  for (const Column& column : columns_) names.push_back(column.name);
  return names;
}

bool TableData::IsEmpty(std::size_t row, std::size_t column) const noexcept {
  const qv::Variant& cell = cells_->Cell(row, column);
  if (cell.Tag() == qv::VT_BSTR) return cell.Data().bstrVal == nullptr;
  if (HoldsObject(cell)) return cell.Data().punkVal == nullptr;
  return cell.Tag() == qv::VT_EMPTY || cell.Tag() == qv::VT_NULL;
}

Value TableData::Get(std::size_t row, std::size_t column) const {
  const qv::Variant& cell = cells_->Cell(row, column);
  return HoldsObject(cell) ? ReadObject(cell, columnTypes_[column]) : FromWire(cell, columnTypes_[column]);
}

Value TableData::ReadObject(const qv::Variant& cell, std::int32_t columnType) const {
  const std::lock_guard<std::mutex> lock(objects_);
  return FromWire(cell, columnType);
}

std::size_t TableData::IndexOf(std::string_view column) const {
  const std::optional<std::size_t> found = byName_.Find(column);
  if (!found) RefuseName(column);
  return *found;
}

void TableData::RefuseName(std::string_view column) const {
  throw Error(Phase::kConversion, "there is no column " + ShortQuote(column) + "; " + NamesForMessage());
}

void TableData::CheckColumn(std::size_t column) const {
  if (column < columns_.size()) return;
  throw Error(Phase::kConversion, "there is no column with the index " + std::to_string(column) +
                                      "; the table has " + CountOf(columns_.size(), "column"));
}

void TableData::CheckRow(std::size_t row) const {
  if (row < Rows()) return;
  throw Error(Phase::kConversion, "there is no row with the index " + std::to_string(row) +
                                      "; the table has " + CountOf(Rows(), "row"));
}

std::string TableData::NamesForMessage() const {
  if (columns_.empty()) return "the table has no columns";
  std::string names = "the table has ";
  for (std::size_t i = 0; i < columns_.size() && i < kMostNames; ++i)
    names += (i == 0 ? "" : ", ") + ShortQuote(columns_[i].name);
  if (columns_.size() > kMostNames) names += " and " + std::to_string(columns_.size() - kMostNames) + " more";
  return names;
}

}  // namespace scriptwells

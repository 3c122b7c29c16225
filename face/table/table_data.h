// The columns and cells of a table. Nothing changes after the constructor; any number of threads may read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "components/recordlist/cell_table.h"
#include "face/table/list_reader.h"
#include "face/table/name_index.h"
#include "qvscriptwells/record_list.h"
#include "scriptwells/value.h"

namespace scriptwells {

class TableData {
 public:
  TableData() = default;
  // Reads the cells in place if the list is of the built-in class, else copies them. Throws _com_error.
  explicit TableData(qv::IRecordListPtr list);
  TableData(const TableData&) = delete;
  TableData& operator=(const TableData&) = delete;

  const std::vector<Column>& Columns() const noexcept { return columns_; }
  std::size_t Rows() const noexcept { return cells_->Rows(); }
  // Row and column must exist.
  bool IsEmpty(std::size_t row, std::size_t column) const noexcept;
  Value Get(std::size_t row, std::size_t column) const;

  // Throws Error.
  std::size_t IndexOf(std::string_view column) const;
  void CheckColumn(std::size_t column) const;
  void CheckRow(std::size_t row) const;

 private:
  void AddColumn(ListColumn column);
  std::vector<std::string_view> Names() const;
  Value ReadObject(const qv::Variant& cell, std::int32_t columnType) const;
  [[noreturn]] void RefuseName(std::string_view column) const;
  std::string NamesForMessage() const;

  std::vector<Column> columns_;
  std::vector<std::int32_t> columnTypes_;
  NameIndex byName_;
  qv::IRecordListPtr list_;  // keeps its cells; null if they are copies
  qv::CellTable copies_;
  qv::CellTable* cells_ = &copies_;  // never changed; it offers no const access
  // Objects in cells (durations) count references without atomic operations, even when they are read.
  mutable std::mutex objects_;
};

}  // namespace scriptwells

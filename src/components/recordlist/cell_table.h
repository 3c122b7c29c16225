// The values of a record list, row by row in one sequence: a cell needs little more memory than its Variant.
// Each row has a lock.
//
// Failure: AddRow and AddColumn throw std::bad_alloc or std::length_error, and then change nothing.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "qvscriptwells/variant.h"

namespace qv {

class CellTable {
 public:
  std::size_t Rows() const noexcept { return rows_ == nullptr ? 0 : rows_->locked.size(); }
  std::size_t Columns() const noexcept { return columns_; }

  // An unlocked row of empty cells, at the end.
  void AddRow();
  // An empty cell at the end of each row. Moves all values; this calls no object.
  void AddColumn();

  // Row and column must exist. The pointer is valid until AddColumn or Clear.
  Variant& Cell(std::size_t row, std::size_t column) noexcept {
    return rows_->cells[row * columns_ + column];
  }
  bool IsLocked(std::size_t row) const noexcept { return rows_->locked[row]; }
  void Lock(std::size_t row, bool locked) noexcept { rows_->locked[row] = locked; }

  // Drops all rows. Released objects may call back, so the table is empty and usable before the first
  // release.
  void Clear() noexcept { const std::unique_ptr<RowStore> gone = std::move(rows_); }

 private:
  struct RowStore {
    std::deque<Variant> cells;
    std::vector<bool> locked;  // one for each row; also counts the rows of a table without columns
  };

  std::unique_ptr<RowStore> rows_;  // null until there is a row, so that an empty table is small
  std::size_t columns_ = 0;
};

}  // namespace qv

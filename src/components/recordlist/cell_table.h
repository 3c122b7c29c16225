// The values of a record list, row by row, in chunks of 64 kB or more: a cell needs little more memory than
// its Variant, and a table has few blocks to free. Each row has a lock.
//
// Failure: AddRow and AddColumn throw std::bad_alloc or std::length_error, and then change nothing.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "qvscriptwells/variant.h"

namespace qv {

class CellTable {
 public:
  CellTable() noexcept : CellTable(0) {}

  std::size_t Rows() const noexcept { return rows_ == nullptr ? 0 : rows_->locked.size(); }
  std::size_t Columns() const noexcept { return chunks_.columns; }

  // A row of empty cells, at the end. Returns a pointer to its cells, or null if there are no columns.
  Variant* AddRow(bool locked = false);
  // An empty cell at the end of each row. Moves all values; this calls no object.
  void AddColumn();

  // Row and column must exist. The pointer is valid until AddColumn or Clear.
  Variant& Cell(std::size_t row, std::size_t column) noexcept { return FirstCell(row)[column]; }
  bool IsLocked(std::size_t row) const noexcept { return rows_->locked[row]; }
  void Lock(std::size_t row, bool locked) noexcept { rows_->locked[row] = locked; }

  // Drops all rows. Released objects may call back, so the table is empty and usable before the first
  // release.
  void Clear() noexcept { const std::unique_ptr<RowStore> gone = std::move(rows_); }

 private:
  using Chunk = std::vector<Variant>;

  // Chunks have 1, 1, 2, 4, ... rows up to 2^shift, then 2^shift rows each. So a short table needs little
  // memory, and finding a row needs no division.
  struct ChunkPlan {
    explicit ChunkPlan(std::size_t columnCount) noexcept;
    std::size_t ChunkOf(std::size_t row) const noexcept;
    std::size_t FirstRow(std::size_t chunk) const noexcept;
    std::size_t RowsIn(std::size_t chunk) const noexcept;

    std::size_t columns;
    unsigned shift = 0;
  };
  struct RowStore {
    std::vector<Chunk> chunks;  // none without columns
    std::vector<bool> locked;   // one for each row; also counts the rows of a table without columns
  };

  explicit CellTable(std::size_t columns) noexcept : chunks_(columns) {}
  Variant* FirstCell(std::size_t row) noexcept;
  void AddChunkFor(std::size_t row);

  std::unique_ptr<RowStore> rows_;  // null until there is a row, so that an empty table is small
  ChunkPlan chunks_;
};

}  // namespace qv

#include "components/recordlist/cell_table.h"

namespace qv {
namespace {

// A full chunk has 64 to 128 kB: the C library joins the freed texts of a chunk when it frees one of at least
// 64 kB, while they are still in the processor's cache.
constexpr std::size_t kCellsOfChunk = 4096;

// How many bits a number has without zeros at its front.
unsigned Width(std::size_t number) noexcept {
  unsigned width = 0;
  for (; number != 0; number >>= 1) ++width;
  return width;
}

}  // namespace

CellTable::ChunkPlan::ChunkPlan(std::size_t columnCount) noexcept : columns(columnCount) {
  while (columns << shift < kCellsOfChunk && columns != 0) ++shift;
}

std::size_t CellTable::ChunkPlan::ChunkOf(std::size_t row) const noexcept {
  const std::size_t full = row >> shift;
  return full == 0 ? Width(row) : shift + full;
}

std::size_t CellTable::ChunkPlan::FirstRow(std::size_t chunk) const noexcept {
  if (chunk > shift) return (chunk - shift) << shift;
  return chunk == 0 ? 0 : std::size_t{1} << (chunk - 1);
}

std::size_t CellTable::ChunkPlan::RowsIn(std::size_t chunk) const noexcept {
  return FirstRow(chunk + 1) - FirstRow(chunk);
}

Variant* CellTable::FirstCell(std::size_t row) noexcept {
  const std::size_t chunk = chunks_.ChunkOf(row);
  return rows_->chunks[chunk].data() + (row - chunks_.FirstRow(chunk)) * chunks_.columns;
}

Variant* CellTable::AddRow(bool locked) {
  if (rows_ == nullptr) rows_ = std::make_unique<RowStore>();
  const std::size_t row = Rows();
  rows_->locked.push_back(locked);
  if (chunks_.columns == 0) return nullptr;
  try {
    AddChunkFor(row);
  } catch (...) {
    rows_->locked.pop_back();
    throw;
  }
  return FirstCell(row);
}

void CellTable::AddChunkFor(std::size_t row) {
  const std::size_t chunk = chunks_.ChunkOf(row);
  if (chunk == rows_->chunks.size()) rows_->chunks.emplace_back(chunks_.RowsIn(chunk) * chunks_.columns);
}

void CellTable::AddColumn() {
  CellTable wider(chunks_.columns + 1);
  for (std::size_t row = 0; row < Rows(); ++row) wider.AddRow(IsLocked(row));
  for (std::size_t row = 0; row < Rows(); ++row) {
    Variant* const to = wider.FirstCell(row);
    for (std::size_t column = 0; column < chunks_.columns; ++column)
      to[column] = std::move(Cell(row, column));
  }
  std::swap(*this, wider);
}

}  // namespace qv

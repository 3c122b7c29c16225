#include "components/recordlist/cell_table.h"

namespace qv {

void CellTable::AddRow() {
  if (rows_ == nullptr) rows_ = std::make_unique<RowStore>();
  rows_->locked.push_back(false);
  try {
    rows_->cells.resize(rows_->cells.size() + columns_);
  } catch (...) {
    rows_->locked.pop_back();
    throw;
  }
}

void CellTable::AddColumn() {
  if (Rows() != 0) {
    std::deque<Variant> wider(Rows() * (columns_ + 1));
    auto to = wider.begin();
    auto from = rows_->cells.begin();
    for (std::size_t row = 0; row < Rows(); ++row, ++to)
      for (std::size_t column = 0; column < columns_; ++column) *to++ = std::move(*from++);
    rows_->cells.swap(wider);
  }
  ++columns_;
}

}  // namespace qv

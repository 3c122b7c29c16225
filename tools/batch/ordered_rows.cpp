#include "tools/batch/ordered_rows.h"

namespace qv::cli {

std::size_t OrderedRows::BytesOf(const Pair& pair) noexcept {
  std::size_t bytes = pair.outcome.text.size();
  for (const std::string& cell : pair.row.cells) bytes += cell.size();
  return bytes;
}

void OrderedRows::Put(DataRow row, RowOutcome outcome) {
  const std::int64_t number = row.number;
  const auto placed = waiting_.emplace(number, Pair{std::move(row), std::move(outcome)}).first;
  bytes_ += BytesOf(placed->second);
  for (auto first = waiting_.begin(); first != waiting_.end() && first->first == next_;
       first = waiting_.erase(first), ++next_) {
    bytes_ -= BytesOf(first->second);
    write_(first->second.row, first->second.outcome);
  }
}

}  // namespace qv::cli

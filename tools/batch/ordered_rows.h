// Brings rows that end in any order back into their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>

#include "tools/batch/row_outcome.h"
#include "tools/batch/rows_file.h"

namespace qv::cli {

class OrderedRows {
 public:
  using Write = std::function<void(const DataRow&, const RowOutcome&)>;

  // `write` takes the rows from 1 on, in order.
  explicit OrderedRows(Write write) : write_(std::move(write)) {}

  // Whether another row may begin. If not, one of those that began before ends the wait.
  bool HasRoom() const noexcept { return waiting_.size() < kMostRows && bytes_ < kMostBytes; }

  // Writes the row, and those that waited for it; or keeps it until all before it are there. Throws what
  // `write` throws.
  void Put(DataRow row, RowOutcome outcome);

 private:
  static constexpr std::size_t kMostRows = 1024;
  static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

  struct Pair {
    DataRow row;
    RowOutcome outcome;
  };
  static std::size_t BytesOf(const Pair& pair) noexcept;

  Write write_;
  std::map<std::int64_t, Pair> waiting_;
  std::int64_t next_ = 1;
  std::size_t bytes_ = 0;  // of those that wait
};

}  // namespace qv::cli

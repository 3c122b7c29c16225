// What the cells of a table add up to, for a check that a client has understood them all.
#pragma once

#include <cstddef>
#include <stdexcept>

namespace qv::bench {

struct TableSum {
  std::size_t rows = 0;
  std::size_t characters = 0;  // of the first column, which is plain ASCII
  long long numbers = 0;
  long long pieces = 0;
  double prices = 0;
  double weights = 0;
  std::size_t dates = 0;  // that are a point in time
  std::size_t paid = 0;
  std::size_t express = 0;
};

// Of the table that `TableAnswer(rows)` holds. All its sums are exact but for the prices.
inline TableSum ExpectedSum(std::size_t rows) {
  TableSum sum;
  sum.rows = rows;
  for (std::size_t row = 0; row < rows; ++row) {
    sum.characters += sizeof("Customer  & Sons") - 1;
    for (std::size_t rest = row; rest >= 10; rest /= 10) ++sum.characters;
    ++sum.characters;
    sum.numbers += static_cast<long long>(1'000'000 + row);
    sum.pieces += static_cast<long long>(row % 1000);
    sum.prices += static_cast<double>(row % 10'000) + static_cast<double>(row % 100) / 100;
    sum.weights += static_cast<double>(row % 500) + 0.5;
    sum.paid += row % 3 == 0 ? 1 : 0;
    sum.express += row % 7 == 0 ? 1 : 0;
  }
  sum.dates = 2 * rows;
  return sum;
}

inline void CheckSum(const TableSum& sum, std::size_t rows) {
  const TableSum expected = ExpectedSum(rows);
  const double off = sum.prices - expected.prices;
  if (sum.rows != rows || sum.characters != expected.characters || sum.numbers != expected.numbers ||
      sum.pieces != expected.pieces || off > 0.01 || off < -0.01 || sum.weights != expected.weights ||
      sum.dates != expected.dates || sum.paid != expected.paid || sum.express != expected.express)
    throw std::runtime_error("wrong table");
}

}  // namespace qv::bench

#include "tools/closest_name.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace qv::cli {

namespace {

// What is longer is surely not a slip of the pen, and would take time by the square of its length.
constexpr std::size_t kLongestGiven = 100;

char Lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Levenshtein's distance, row by row.
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t above = row[j + 1];
      const std::size_t changed = diagonal + (Lowered(a[i]) == Lowered(b[j]) ? 0 : 1);
      row[j + 1] = std::min({row[j] + 1, above + 1, changed});
      diagonal = above;
    }
  }
  return row.back();
}

}  // namespace

std::string ClosestName(const std::string& given, const std::vector<std::string>& candidates) {
  const std::string start = given.substr(0, kLongestGiven);
  std::string closest;
  std::size_t least = 0;
  for (const std::string& candidate : candidates) {
    const std::size_t distance = Distance(start, candidate);
    if (!closest.empty() && distance >= least) continue;
    closest = candidate;
    least = distance;
  }
  return 2 * least <= closest.size() ? closest : std::string();
}

}  // namespace qv::cli

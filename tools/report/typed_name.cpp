#include "tools/report/typed_name.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace qv::cli {

namespace {

// A longer name is not a spelling mistake, and the time grows with the square of its length.
constexpr std::size_t kLongestGiven = 100;

bool IsSame(char a, char b) {
  return Lowered(a) == Lowered(b);
}

// Changed, added, missing and swapped letters, row by row (Levenshtein's distance with swaps of neighbours).
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> before;  // the row before the last one
  std::vector<std::size_t> last(b.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::vector<std::size_t> row{i + 1};
    for (std::size_t j = 0; j < b.size(); ++j) {
      row.push_back(std::min({row[j] + 1, last[j + 1] + 1, last[j] + (IsSame(a[i], b[j]) ? 0 : 1)}));
      if (i > 0 && j > 0 && IsSame(a[i], b[j - 1]) && IsSame(a[i - 1], b[j]))
        row[j + 1] = std::min(row[j + 1], before[j - 1] + 1);
    }
    before = std::move(last);
    last = std::move(row);
  }
  return last.back();
}

}  // namespace

bool IsSameName(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), IsSame);
}

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

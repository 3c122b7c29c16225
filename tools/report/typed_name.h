// Names as users type them: in any case, and sometimes misspelled.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// The letter in lower case, if it is an ASCII letter.
constexpr char Lowered(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Whether the names are equal in any case of ASCII letters.
bool IsSameName(const std::string& a, const std::string& b);

// The candidate with the fewest changed, added, missing or swapped letters, in any case; the first of
// several. Empty if there are no candidates, or if more than half of that candidate's letters would be wrong.
std::string ClosestName(const std::string& given, const std::vector<std::string>& candidates);

}  // namespace qv::cli

// The name that somebody probably meant.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// The candidate with the fewest changed, added, missing or swapped letters, case apart; the first one of
// several. Empty when there are no candidates, or when more than half of the letters of that one would be
// wrong.
std::string ClosestName(const std::string& given, const std::vector<std::string>& candidates);

}  // namespace qv::cli

// The difference of two texts, line by line.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace scriptwells {

struct DiffLine {
  char mark;  // '-' of the first text only, '+' of the second
  std::string text;
};
// What must be removed and added, in order. Close to the shortest; for long texts that differ much, all of
// both.
std::vector<DiffLine> DiffOf(const std::vector<std::string>& first, const std::vector<std::string>& second);

// "- expected" and "+ sent", at most `most` lines, each cut around its first difference.
std::string ShortDiff(const std::vector<DiffLine>& diff, std::size_t most);

// How many lines of the first are not in the second, and the other way.
std::size_t Distance(const std::vector<std::string>& first, const std::vector<std::string>& second);

}  // namespace scriptwells

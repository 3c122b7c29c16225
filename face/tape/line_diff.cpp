#include "face/tape/line_diff.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "face/text/unsafe_characters.h"

namespace scriptwells {

namespace {

using Lines = std::vector<std::string>;
using Diff = std::vector<DiffLine>;

constexpr std::size_t kMostCells = 4'000'000;  // of the table of common lines
constexpr std::size_t kBefore = 40;            // bytes that are shown before a difference
constexpr std::size_t kMostBytes = 160;        // of a line

struct Part {
  const Lines& lines;
  std::size_t begin, end;
  std::size_t size() const { return end - begin; }
};

void AddAll(const Part& part, char mark, Diff* diff) {
  for (std::size_t i = part.begin; i < part.end; ++i) diff->push_back({mark, part.lines[i]});
}

// By the longest common subsequence.
void AddDifference(const Part& first, const Part& second, Diff* diff) {
  const std::size_t width = second.size() + 1;
  std::vector<std::uint32_t> common((first.size() + 1) * width);
  for (std::size_t i = first.size(); i-- > 0;)
    for (std::size_t j = second.size(); j-- > 0;)
      common[i * width + j] = first.lines[first.begin + i] == second.lines[second.begin + j]
                                  ? common[(i + 1) * width + j + 1] + 1
                                  : std::max(common[(i + 1) * width + j], common[i * width + j + 1]);
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < first.size() && j < second.size()) {
    if (first.lines[first.begin + i] == second.lines[second.begin + j]) {
      ++i;
      ++j;
    } else if (common[(i + 1) * width + j] >= common[i * width + j + 1]) {
      diff->push_back({'-', first.lines[first.begin + i++]});
    } else {
      diff->push_back({'+', second.lines[second.begin + j++]});
    }
  }
  AddAll({first.lines, first.begin + i, first.end}, '-', diff);
  AddAll({second.lines, second.begin + j, second.end}, '+', diff);
}

bool BeginsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

// The line around this place.
std::string Around(const std::string& line, std::size_t place) {
  std::size_t begin = place > kBefore ? place - kBefore : 0;
  while (begin > 0 && begin < line.size() && !BeginsCharacter(line[begin])) --begin;
  std::size_t end = std::min(begin + kMostBytes, line.size());
  while (end < line.size() && !BeginsCharacter(line[end])) --end;
  return (begin == 0 ? "" : "...") + line.substr(begin, end - begin) + (end == line.size() ? "" : "...");
}

// The line that another one has replaced, or that replaces it; that line itself for none.
const DiffLine& Partner(const Diff& diff, std::size_t index) {
  const bool isFirst = diff[index].mark == '-';
  std::size_t begin = index;
  while (begin > 0 && diff[begin - 1].mark == diff[index].mark) --begin;
  std::size_t other = isFirst ? index : begin;
  if (isFirst)
    while (other < diff.size() && diff[other].mark == '-') ++other;
  else
    while (other > 0 && diff[other - 1].mark == '-') --other;
  other += index - begin;
  return other < diff.size() && diff[other].mark != diff[index].mark ? diff[other] : diff[index];
}

std::size_t PlaceOfDifference(const std::string& one, const std::string& two) {
  const std::size_t shorter = std::min(one.size(), two.size());
  const auto end = one.begin() + static_cast<std::ptrdiff_t>(shorter);
  const auto place = std::mismatch(one.begin(), end, two.begin()).first;
  return one == two ? 0 : static_cast<std::size_t>(place - one.begin());
}

}  // namespace

Diff DiffOf(const Lines& first, const Lines& second) {
  const std::size_t shorter = std::min(first.size(), second.size());
  std::size_t begin = 0;
  while (begin < shorter && first[begin] == second[begin]) ++begin;
  std::size_t same = 0;
  while (same < shorter - begin && first[first.size() - 1 - same] == second[second.size() - 1 - same]) ++same;
  const Part a{first, begin, first.size() - same};
  const Part b{second, begin, second.size() - same};
  Diff diff;
  if ((a.size() + 1) * (b.size() + 1) <= kMostCells) {
    AddDifference(a, b, &diff);
  } else {
    AddAll(a, '-', &diff);
    AddAll(b, '+', &diff);
  }
  return diff;
}

std::string ShortDiff(const Diff& diff, std::size_t most) {
  std::string text;
  for (std::size_t i = 0; i < std::min(diff.size(), most); ++i)
    text += std::string("\n") + diff[i].mark + " " +
            EscapeInLine(Around(diff[i].text, PlaceOfDifference(diff[i].text, Partner(diff, i).text)));
  if (diff.size() > most) text += "\n  and " + std::to_string(diff.size() - most) + " more lines";
  return text;
}

std::size_t Distance(const Lines& first, const Lines& second) {
  Lines a = first;
  Lines b = second;
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  Lines apart;
  std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(apart));
  return apart.size();
}

}  // namespace scriptwells

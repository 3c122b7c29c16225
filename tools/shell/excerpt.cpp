#include "tools/shell/excerpt.h"

#include <algorithm>

#include "tools/output/cell_width.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

constexpr std::size_t kMostBytes = 160;  // of the line, and half of it before the column

bool IsInsideCharacter(const std::string& text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

// Empty without such a line.
std::string LineOf(const std::string& script, int number) {
  std::size_t start = 0;
  for (int i = 1; i < number; ++i) {
    start = script.find('\n', start);
    if (start == std::string::npos) return {};
    ++start;
  }
  std::string line = script.substr(start, script.find('\n', start) - start);
  std::replace(line.begin(), line.end(), '\t', ' ');
  return line.substr(0, line.find_last_not_of(" \r") + 1);
}

// The byte of a column, which counts characters.
std::size_t ByteOf(const std::string& line, int column) {
  std::size_t at = 0;
  for (int i = 1; i < column && at < line.size(); ++i) do
      ++at;
    while (IsInsideCharacter(line, at));
  return at;
}

std::size_t WidthOf(const std::string& text) {
  return text.empty() ? 0 : ShownWidth(text);
}

}  // namespace

std::string Excerpt(const std::string& script, const ScriptPlace& place) {
  std::string line = LineOf(script, place.line);
  if (line.empty()) return {};
  const bool isKnown = place.column > 0;
  std::size_t mark = isKnown ? ByteOf(line, place.column) : line.find_first_not_of(' ');
  std::size_t cut = isKnown && mark > kMostBytes / 2 ? mark - kMostBytes / 2 : 0;
  while (IsInsideCharacter(line, cut)) --cut;
  std::size_t end = std::min(cut + kMostBytes, line.size());
  while (IsInsideCharacter(line, end)) --end;
  line = line.substr(cut, end - cut);
  mark -= cut;
  const std::string head = "  " + std::to_string(place.line) + " | ";
  const std::string margin = std::string(head.size() - 2, ' ') + "| ";
  const std::string marks = isKnown ? "^" : std::string(WidthOf(line.substr(mark)), '^');
  return head + EscapeForTerminal(line) + "\n" + margin + std::string(WidthOf(line.substr(0, mark)), ' ') +
         marks + "\n";
}

}  // namespace qv::cli

#include "face/table/aligned_text.h"

#include <algorithm>

#include "face/text/unsafe_characters.h"

namespace scriptwells {

namespace {

// The lead bytes of UTF-8.
std::size_t CharactersIn(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

void AlignedText::AddColumn(const std::string& head, bool isRight) {
  Add(head, columns_.emplace_back(ColumnShape{isRight, 0}));
}

void AlignedText::AddCell(const std::string& text) {
  Add(text, columns_[cells_.size() % columns_.size()]);
}

void AlignedText::Add(const std::string& text, ColumnShape& column) {
  std::string shown = EscapeInLine(text);
  const std::size_t width = CharactersIn(shown);
  column.width = std::max(column.width, width);
  cells_.push_back({std::move(shown), width});
}

std::string AlignedText::Lines() const {
  std::string lines;
  for (std::size_t first = 0; first < cells_.size(); first += columns_.size()) {
    if (first != 0) lines += '\n';
    lines += Line(first);
  }
  return lines;
}

std::string AlignedText::Line(std::size_t first) const {
  std::string line;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const Shown& cell = cells_[first + i];
    const std::string blanks(columns_[i].width - cell.width, ' ');
    if (i != 0) line += "  ";
    line += columns_[i].isRight ? blanks + cell.text : cell.text + blanks;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace scriptwells

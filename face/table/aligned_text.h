// A table as text for people: aligned columns with two blanks between them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace scriptwells {

// Control characters and invisible format characters are escaped, such as "\n" and "\x1b". Each other
// character counts as one place wide.
class AlignedText {
 public:
  void AddColumn(const std::string& head, bool isRight);
  // Row by row, after the last column.
  void AddCell(const std::string& text);
  // The heads, then the rows; without blanks at the ends of lines, and without a line end after the last one.
  std::string Lines() const;

 private:
  struct ColumnShape {
    bool isRight;
    std::size_t width;
  };
  struct Shown {
    std::string text;
    std::size_t width;
  };

  void Add(const std::string& text, ColumnShape& column);
  std::string Line(std::size_t first) const;

  std::vector<ColumnShape> columns_;
  std::vector<Shown> cells_;  // the heads first
};

}  // namespace scriptwells

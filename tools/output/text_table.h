// Tables for people.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

struct libscols_table;
struct libscols_line;

namespace qv::cli {

struct TextColumn {
  std::string head;
  bool isNumber = false;  // aligned to the right, and never cut
  bool isWhole = false;   // never cut
};

// A table that is filled row by row. All texts are UTF-8. Control and format characters (unsafe_characters.h)
// are escaped, and so are characters beyond ASCII unless LC_CTYPE is a UTF-8 locale. Throws std::bad_alloc.
class TextTable {
 public:
  explicit TextTable(std::vector<TextColumn> columns);
  ~TextTable();
  TextTable(const TextTable&) = delete;
  TextTable& operator=(const TextTable&) = delete;

  // As many texts as there are columns.
  void AddRow(const std::vector<std::string>& texts);
  // The lines with their line ends, the heads first; nothing without columns. If the lines are longer than
  // `width` (0: no limit), texts are cut, the longest ones first and down to 4 columns. To be called once.
  std::string Format(std::size_t width);

 private:
  struct Unref {
    void operator()(libscols_table* table) const;
  };

  void AddLine(const std::vector<std::string>& texts);
  bool Fits(std::size_t limit, std::size_t available) const;
  std::size_t LimitFor(std::size_t width) const;
  void FinishLine(libscols_line* line, std::size_t limit);
  void FinishLines(std::size_t limit);

  std::vector<TextColumn> columns_;
  std::vector<std::size_t> widths_;  // of the widest text, head included
  std::unique_ptr<libscols_table, Unref> table_;
};

// One value.
struct TableRow {
  std::string name;
  std::string type;
  std::string value;
};

// A table with these column heads, and as many texts in every row. Nothing is cut.
std::string FormatColumns(const std::vector<std::string>& heads,
                          const std::vector<std::vector<std::string>>& rows);

// The same with the columns NAME, TYPE and VALUE.
std::string FormatTable(const std::vector<TableRow>& rows);

}  // namespace qv::cli

// Tables for people.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// One value, all UTF-8. Control characters in the value are shown as escapes.
struct TableRow {
  std::string name;
  std::string type;
  std::string value;
};

// A table with these column heads, and as many texts in every row. Otherwise as below.
std::string FormatColumns(const std::vector<std::string>& heads,
                          const std::vector<std::vector<std::string>>& rows);

// A table with the columns NAME, TYPE and VALUE, with its last line end. It is never cut to the terminal's
// width. Characters beyond ASCII need a UTF-8 locale in LC_CTYPE, else they are shown as escapes too. Throws
// std::bad_alloc.
std::string FormatTable(const std::vector<TableRow>& rows);

}  // namespace qv::cli

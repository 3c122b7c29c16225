// A table on its way from a script to an answer.
#pragma once

#include <string>
#include <vector>

namespace qv::devservice {

// Texts are UTF-8 that XML can carry; the name is one that IsColumnName accepts.
struct TableColumn {
  std::string name;
  std::string displayName;
  std::string type;  // The text of xsd:type.
};

// End marks inside Table::records. XML cannot carry them, so no cell holds them.
inline constexpr char kCellEnd = '\x1F';
inline constexpr char kRecordEnd = '\x1E';

// Records are one text, since a table can have a million cells: each cell ends with kCellEnd, each record
// with kRecordEnd. Cells are in the order of the columns; those that are missing at the end of a record are
// empty.
struct Table {
  std::vector<TableColumn> columns;
  std::string records;
};

}  // namespace qv::devservice

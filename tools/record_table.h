// A table that a script answered: its columns, then its rows one after the other.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "qvscriptwells/record_list.h"

namespace qv::cli {

struct TableColumn {
  std::string name;         // UTF-8
  std::string displayName;  // the name where there is none
  std::int32_t type = 0;    // ColumnType
};

// "string", "int", ..., "unknown" for a type that has no name.
std::string ColumnTypeName(std::int32_t type);

bool IsNumberColumn(std::int32_t type);
// Points in time, and durations.
bool IsTimeColumn(std::int32_t type);

// The cell as text and as JSON, by the forms of answer_format.h. In a column of dates or of points in time
// every date is one, also on day 0 and at midnight. Both throw _com_error.
std::string CellText(const Variant& cell, std::int32_t columnType);
std::string CellJson(const Variant& cell, std::int32_t columnType);

// Every operation throws _com_error for what the table's own component does wrong.
class RecordTable {
 public:
  // `list` is not null.
  explicit RecordTable(IRecordListPtr list);

  const std::vector<TableColumn>& Columns() const { return columns_; }
  // The next row, one value for each column; false behind the last one.
  bool Next(std::vector<Variant>& cells);

 private:
  void ReadColumns();

  IRecordListPtr list_;
  std::vector<TableColumn> columns_;
  IRecordListCursorPtr cursor_;
};

}  // namespace qv::cli

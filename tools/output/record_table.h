// A table that a script returned: its columns, then its rows one by one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "qvscriptwells/record_list.h"

namespace qv::cli {

struct TableColumn {
  std::string name;         // UTF-8
  std::string displayName;  // the name if there is none
  std::int32_t type = 0;    // ColumnType
};

// "string", "int", ..., or "unknown".
std::string ColumnTypeName(std::int32_t type);

bool IsNumberColumn(std::int32_t type);
// Points in time, and durations.
bool IsTimeColumn(std::int32_t type);

// The cell as text and as JSON, in the forms of answer_format.h. In a column of dates, or of dates with
// times, each value has the form of its column, also on day 0 and at midnight. Both throw _com_error.
std::string CellText(const Variant& cell, std::int32_t columnType);
std::string CellJson(const Variant& cell, std::int32_t columnType);

// Every operation throws _com_error if the table's component fails.
class RecordTable {
 public:
  // `list` is not null.
  explicit RecordTable(IRecordListPtr list);

  const std::vector<TableColumn>& Columns() const { return columns_; }
  // Reads the next row, one value for each column; false after the last one.
  bool Next(std::vector<Variant>& cells);

 private:
  void ReadColumns();

  IRecordListPtr list_;
  std::vector<TableColumn> columns_;
  IRecordListCursorPtr cursor_;
};

}  // namespace qv::cli

#include "tools/batch/rows_file.h"

#include <algorithm>
#include <set>

#include "tools/input/parameter_text.h"
#include "tools/report/failure.h"

namespace qv::cli {

namespace {

constexpr char kIgnored[] = "ignore";
constexpr char kUsualType[] = "string";

RowColumn ColumnOf(const std::string& cell) {
  const std::size_t colon = cell.rfind(':');
  if (colon == std::string::npos) return {cell, kUsualType};
  const std::string type = cell.substr(colon + 1);
  return {cell.substr(0, colon), type, type != kIgnored};
}

}  // namespace

RowsFile::RowsFile(const std::string& path) : reader_(path) {
  if (!reader_.Next(head_)) Refuse("the head of the columns is missing");
  std::set<std::string> names;
  for (const std::string& cell : head_) {
    columns_.push_back(ColumnOf(cell));
    const std::string& name = columns_.back().name;
    if (name.empty()) Refuse("a column has no name");
    if (name.find('=') != std::string::npos) Refuse("the column '" + name + "' holds '='");
    if (!names.insert(name).second) Refuse("the column '" + name + "' is there twice");
  }
}

bool RowsFile::Next(DataRow& row) {
  if (!reader_.Next(row.cells)) return false;
  row.number = ++number_;
  if (row.cells.size() != head_.size())
    Refuse(std::to_string(row.cells.size()) + " cells, and the head has " + std::to_string(head_.size()));
  return true;
}

scriptwells::Arguments ArgumentsOf(const std::vector<RowColumn>& columns, const DataRow& row,
                                   const RemarkOnCell& remark) {
  scriptwells::Arguments arguments;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const RowColumn& column = columns[i];
    if (!column.isSent) continue;
    ScriptParameter parameter = ParseParameter(column.name + "=" + column.type + ":" + row.cells[i]);
    if (remark)
      for (const std::string& note : parameter.notes) remark(i, note);
    arguments.Add(std::move(parameter.argument));
  }
  return arguments;
}

bool HoldsFiles(const std::vector<RowColumn>& columns) {
  return std::any_of(columns.begin(), columns.end(),
                     [](const RowColumn& column) { return column.type == "file"; });
}

RowsFacts ExamineRows(const std::string& path) {
  RowsFile file(path);
  RowsFacts facts;
  std::set<std::size_t> noted;
  DataRow row;
  const RemarkOnCell remark = [&](std::size_t column, const std::string& note) {
    if (!noted.insert(column).second) return;
    facts.notes.push_back("column '" + file.Columns()[column].name + "', as in row " +
                          std::to_string(row.number) + ": the parameter " + note);
  };
  while (file.Next(row)) {
    try {
      ArgumentsOf(file.Columns(), row, remark);
    } catch (const Failure& failure) {
      file.Refuse(failure.Message());
    }
    facts.count = row.number;
  }
  facts.digest = file.DigestSoFar();
  return facts;
}

}  // namespace qv::cli

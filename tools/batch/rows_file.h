// A CSV file whose rows are the parameters of calls.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "scriptwells/session.h"
#include "tools/batch/csv_reader.h"

namespace qv::cli {

struct RowColumn {
  std::string name;
  std::string type;    // as in a parameter of the command line
  bool isSent = true;  // not for the type "ignore"
};

struct DataRow {
  std::int64_t number = 0;  // from 1, without the head
  std::vector<std::string> cells;
};

// All throw Failure (kLocal) that names file and line.
class RowsFile {
 public:
  // Reads the head: cells "name:type", or "name" for a string. Names are not empty, without "=", and differ.
  explicit RowsFile(const std::string& path);

  // The cells of the head as they are.
  const std::vector<std::string>& Head() const noexcept { return head_; }
  const std::vector<RowColumn>& Columns() const noexcept { return columns_; }

  // The next row, which has as many cells as the head; false at the end.
  bool Next(DataRow& row);
  [[noreturn]] void Refuse(const std::string& reason) const { reader_.Refuse(reason); }
  std::uint64_t DigestSoFar() const noexcept { return reader_.DigestSoFar(); }

 private:
  CsvReader reader_;
  std::vector<std::string> head_;
  std::vector<RowColumn> columns_;
  std::int64_t number_ = 0;
};

// Takes what changes when a value is sent: the column's index and the remark.
using RemarkOnCell = std::function<void(std::size_t column, const std::string& remark)>;

// The cells as parameters. Throws Failure (kLocal) that names the parameter.
scriptwells::Arguments ArgumentsOf(const std::vector<RowColumn>& columns, const DataRow& row,
                                   const RemarkOnCell& remark = {});

// Whether cells name files to upload.
bool HoldsFiles(const std::vector<RowColumn>& columns);

struct RowsFacts {
  std::int64_t count = 0;
  std::uint64_t digest = 0;
  std::vector<std::string> notes;  // at most one for each column
};

// Reads the whole file, and checks that every cell can be sent.
RowsFacts ExamineRows(const std::string& path);

}  // namespace qv::cli

// Writes the results of a batch, and beside them the rows without one.
#pragma once

#include <fstream>
#include <iosfwd>
#include <string>
#include <vector>

#include "scriptwells/value.h"
#include "tools/batch/row_outcome.h"
#include "tools/batch/rows_file.h"
#include "tools/output/output_format.h"

namespace qv::cli {

// The answer as the results hold it: a field of CSV, or an object of JSON. A table is JSON in both.
std::string AnswerText(OutputFormat format, const scriptwells::Value& answer);

class ResultsWriter {
 public:
  // `results` must outlive this object. CSV begins with a head.
  ResultsWriter(std::ostream& results, OutputFormat format, const RowsFile& rows, std::string failedFile);

  // Rows come in their order. CSV: the row's cells and the answer; JSON: one line
  //   {"row":17,"cells":{"a":"5"},"answer":{"type":"int","value":42,"tag":22}}
  // A row that failed, or whose fate is unknown, is written to the other file, which is created for the first
  // of them: its cells, number and message, in a form that is a file of rows again. Throws Failure (kLocal).
  void Write(const DataRow& row, const RowOutcome& outcome);

 private:
  void WriteLine(std::ostream& out, const std::string& line) const;
  void WriteFailed(const DataRow& row, const std::string& message);
  std::string CellsJson(const DataRow& row) const;

  std::ostream& results_;
  OutputFormat format_;
  std::vector<std::string> head_;
  std::vector<RowColumn> columns_;
  std::string failedFile_;
  std::ofstream failed_;
};

}  // namespace qv::cli

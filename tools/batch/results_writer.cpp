#include "tools/batch/results_writer.h"

#include <cerrno>
#include <cstring>
#include <ostream>
#include <utility>

#include "face/text/csv_text.h"
#include "face/text/json_text.h"
#include "tools/output/answer_format.h"
#include "tools/report/failure.h"
#include "tools/report/standard_output.h"

namespace qv::cli {

namespace {

using scriptwells::Type;
using scriptwells::Value;

std::string WithoutLineEnd(std::string text) {
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

std::string TextOf(const Value& answer) {
  if (answer.type() == Type::kTable) return answer.AsTable().ToJson();
  return WithoutLineEnd(FormatAnswer(OutputFormat::kText, answer));
}

std::string JsonOf(const Value& answer) {
  if (answer.type() == Type::kTable) return R"({"type":"recordlist",)" + answer.AsTable().ToJson().substr(1);
  return WithoutLineEnd(FormatAnswer(OutputFormat::kJson, answer));
}

std::string CsvLine(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) line += scriptwells::CsvField(cell, "") + ",";
  return line;
}

// What this program adds to the rows that failed.
bool IsRemark(const RowColumn& column) {
  return !column.isSent && (column.name == "row" || column.name == "error");
}

std::vector<std::string> WithoutRemarks(std::vector<std::string> cells,
                                        const std::vector<RowColumn>& columns) {
  for (std::size_t i = cells.size(); i-- > 0;)
    if (IsRemark(columns[i])) cells.erase(cells.begin() + static_cast<std::ptrdiff_t>(i));
  return cells;
}

}  // namespace

std::string AnswerText(OutputFormat format, const Value& answer) {
  if (format == OutputFormat::kJson) return JsonOf(answer);
  return answer.IsEmpty() ? "" : scriptwells::CsvField(TextOf(answer), "");
}

ResultsWriter::ResultsWriter(std::ostream& results, OutputFormat format, const RowsFile& rows,
                             std::string failedFile)
    : results_(results),
      format_(format),
      head_(rows.Head()),
      columns_(rows.Columns()),
      failedFile_(std::move(failedFile)) {
  if (format_ != OutputFormat::kJson) WriteLine(results_, CsvLine(head_) + "answer\r\n");
}

void ResultsWriter::WriteLine(std::ostream& out, const std::string& line) const {
  out << TextFor(out, line) << std::flush;
  if (out) return;
  if (&out == &results_) throw FailedOutput(out, "cannot write the results");
  throw Failure(ExitStatus::kLocal, "cannot write " + failedFile_ + ": " + std::strerror(errno));
}

std::string ResultsWriter::CellsJson(const DataRow& row) const {
  std::string json;
  for (std::size_t i = 0; i < columns_.size(); ++i)
    json += (json.empty() ? "{" : ",") + scriptwells::JsonText(columns_[i].name) + ":" +
            scriptwells::JsonText(row.cells[i]);
  return json + "}";
}

void ResultsWriter::Write(const DataRow& row, const RowOutcome& outcome) {
  if (outcome.fate == Fate::kUnsent) return;
  if (outcome.fate != Fate::kDone) return WriteFailed(row, outcome.text);
  if (format_ != OutputFormat::kJson) return WriteLine(results_, CsvLine(row.cells) + outcome.text + "\r\n");
  WriteLine(results_, R"({"row":)" + std::to_string(row.number) + R"(,"cells":)" + CellsJson(row) +
                          R"(,"answer":)" + outcome.text + "}\n");
}

void ResultsWriter::WriteFailed(const DataRow& row, const std::string& message) {
  if (!failed_.is_open()) {
    failed_.open(failedFile_, std::ios::binary | std::ios::trunc);
    WriteLine(failed_, CsvLine(WithoutRemarks(head_, columns_)) + "row:ignore,error:ignore\r\n");
  }
  WriteLine(failed_, CsvLine(WithoutRemarks(row.cells, columns_)) + std::to_string(row.number) + "," +
                         scriptwells::CsvField(message, "") + "\r\n");
}

}  // namespace qv::cli

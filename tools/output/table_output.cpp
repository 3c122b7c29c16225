#include "tools/output/table_output.h"

#include <algorithm>
#include <ostream>
#include <streambuf>
#include <string_view>
#include <utility>

#include "scriptwells/value.h"
#include "tools/output/answer_format.h"
#include "tools/output/text_table.h"
#include "tools/report/failure.h"
#include "tools/report/standard_output.h"
#include "tools/report/unsafe_characters.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

using scriptwells::Column;
using scriptwells::Row;
using scriptwells::Table;
using scriptwells::Type;

bool IsNumber(Type type) {
  return type >= Type::kByte && type <= Type::kDouble;
}

// Points in time, and durations.
bool IsTime(Type type) {
  return type >= Type::kDate && type <= Type::kDuration;
}

std::string TextOf(const Table& table, std::size_t width) {
  std::vector<TextColumn> heads;
  for (const Column& column : table.Columns())
    heads.push_back({column.name, IsNumber(column.type), IsTime(column.type)});
  TextTable text(std::move(heads));
  for (const Row& row : table) {
    ThrowIfInterrupted();
    std::vector<std::string> cells;
    for (std::size_t i = 0; i < row.size(); ++i) cells.push_back(row[i].ToString());
    text.AddRow(cells);
  }
  return text.Format(width);
}

// Passes on what the library writes, line by line, until an interrupt.
class WatchedOutput : public std::streambuf {
 public:
  // Leaves out the first `skipped` bytes.
  explicit WatchedOutput(std::ostream& out, std::streamsize skipped = 0)
      : out_(out), isTerminal_(IsTerminal(out)), skipped_(skipped) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    if (Interrupted()) return 0;
    const std::streamsize skipped = std::exchange(skipped_, 0);
    const std::string_view rest(text + skipped, static_cast<std::size_t>(count - skipped));
    if (isTerminal_)
      out_ << EscapeForTerminal(std::string(rest));
    else
      out_ << rest;
    return out_ ? count : 0;
  }

 private:
  std::ostream& out_;
  bool isTerminal_;
  std::streamsize skipped_;
};

void WriteCsv(const Table& table, const std::string& nullText, std::ostream& out) {
  WatchedOutput watched(out);
  std::ostream lines(&watched);
  table.WriteCsv(lines, nullText);
}

// The type comes before the members that the library writes.
void WriteJson(const Table& table, std::ostream& out) {
  out << R"({"type":"recordlist",)";
  WatchedOutput watched(out, 1);
  std::ostream members(&watched);
  table.WriteJson(members);
  out << "\n";
}

bool HasWrappedCounts(const Table& table, std::size_t column) {
  return std::any_of(table.begin(), table.end(),
                     [column](const Row& row) { return HasWrappedCount(row[column].Get()); });
}

}  // namespace

void WriteTable(const Table& table, const TableForm& form, std::ostream& out) {
  if (form.output == OutputFormat::kCsv)
    WriteCsv(table, form.csvNull, out);
  else if (form.output == OutputFormat::kJson)
    WriteJson(table, out);
  else
    out << TextOf(table, form.width);
  out << std::flush;
  CheckWritten(out);
}

std::vector<std::string> LossesOf(const Table& table) {
  std::vector<std::string> losses;
  if (table.empty()) return losses;  // nothing was lost
  const std::vector<Column>& columns = table.Columns();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string name = "'" + columns[i].name + "'";
    if (columns[i].type == Type::kEmpty)
      losses.push_back("column " + name + " has a type that the library does not read; its cells are empty");
    if (columns[i].type == Type::kLink)
      losses.push_back("the links of the URL column " + name +
                       " do not arrive; let the script answer with strings");
    if (columns[i].type == Type::kDuration && HasWrappedCounts(table, i))
      losses.push_back("a count of a duration in column " + name +
                       " does not fit 16 bits and arrived changed");
  }
  return losses;
}

void CheckWritten(const std::ostream& out) {
  ThrowIfInterrupted();
  if (!out) throw FailedOutput(out, "cannot write the answer to standard output");
}

}  // namespace qv::cli

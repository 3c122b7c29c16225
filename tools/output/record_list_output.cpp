#include "tools/output/record_list_output.h"

#include <memory>
#include <ostream>

#include "qvscriptwells/com_error.h"
#include "tools/output/answer_format.h"
#include "tools/output/csv_text.h"
#include "tools/output/record_table.h"
#include "tools/output/text_table.h"
#include "tools/report/failure.h"
#include "tools/report/standard_output.h"
#include "tools/system/interrupt.h"
#include "tools/values/object_text.h"

namespace qv::cli {

namespace {

using Columns = std::vector<TableColumn>;
using Cells = std::vector<Variant>;

// Prints the rows of a table in order.
class RowWriter {
 public:
  virtual ~RowWriter() = default;
  virtual void Add(const Cells& cells) = 0;
  virtual void Finish() = 0;
};

class CsvWriter : public RowWriter {
 public:
  CsvWriter(const Columns& columns, const std::string& nullText, std::ostream& out)
      : columns_(columns), nullText_(nullText), out_(out) {
    std::string line;
    for (const TableColumn& column : columns_) Append(line, CsvField(column.name, ""));
    End(line);
  }

  void Add(const Cells& cells) override {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) Append(line, Field(cells[i], columns_[i].type));
    End(line);
  }

  void Finish() override {}

 private:
  std::string Field(const Variant& cell, std::int32_t type) const {
    if (!HasValue(cell)) return nullText_;
    const std::string text = CellText(cell, type);
    return columns_.size() == 1 ? CsvOnlyField(text, nullText_) : CsvField(text, nullText_);
  }
  void Append(std::string& line, const std::string& field) {
    if (!first_) line += ',';
    first_ = false;
    line += field;
  }
  void End(const std::string& line) {
    out_ << TextFor(out_, line + "\r\n");
    first_ = true;
  }

  const Columns& columns_;
  const std::string& nullText_;
  std::ostream& out_;
  bool first_ = true;  // field of its line
};

std::string ColumnJson(const TableColumn& column) {
  const auto text = [](const std::string& utf8) {
    return ValueJsonText(Variant::FromString(FromUtf8(utf8)));
  };
  return "{\"name\":" + text(column.name) + ",\"displayName\":" + text(column.displayName) +
         ",\"type\":" + text(ColumnTypeName(column.type)) + "}";
}

class JsonWriter : public RowWriter {
 public:
  JsonWriter(const Columns& columns, std::ostream& out) : columns_(columns), out_(out) {
    std::string start = R"({"type":"recordlist","columns":[)";
    for (std::size_t i = 0; i < columns_.size(); ++i) start += (i == 0 ? "" : ",") + ColumnJson(columns_[i]);
    out_ << start + "],\"rows\":[";
  }

  void Add(const Cells& cells) override {
    std::string row = first_ ? "[" : ",[";
    first_ = false;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (i != 0) row += ',';
      row += CellJson(cells[i], columns_[i].type);
    }
    out_ << row + "]";
  }

  void Finish() override { out_ << "]}\n"; }

 private:
  const Columns& columns_;
  std::ostream& out_;
  bool first_ = true;
};

std::vector<TextColumn> Heads(const Columns& columns) {
  std::vector<TextColumn> heads;
  for (const TableColumn& column : columns)
    heads.push_back({column.displayName, IsNumberColumn(column.type), IsTimeColumn(column.type)});
  return heads;
}

// Keeps all rows, since the widths of columns depend on them.
class TextWriter : public RowWriter {
 public:
  TextWriter(const Columns& columns, std::size_t width, std::ostream& out)
      : columns_(columns), width_(width), out_(out), table_(Heads(columns)) {}

  void Add(const Cells& cells) override {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < cells.size(); ++i) texts.push_back(CellText(cells[i], columns_[i].type));
    table_.AddRow(texts);
  }

  void Finish() override { out_ << table_.Format(width_); }

 private:
  const Columns& columns_;
  std::size_t width_;
  std::ostream& out_;
  TextTable table_;
};

std::unique_ptr<RowWriter> MakeWriter(const ListForm& form, const Columns& columns, std::ostream& out) {
  if (form.output == OutputFormat::kCsv) return std::make_unique<CsvWriter>(columns, form.csvNull, out);
  if (form.output == OutputFormat::kJson) return std::make_unique<JsonWriter>(columns, out);
  return std::make_unique<TextWriter>(columns, form.width, out);
}

// Collects which columns did not arrive as they were sent. A table without rows lost nothing.
class Losses {
 public:
  explicit Losses(const Columns& columns) : columns_(columns), hasWrapped_(columns.size(), false) {}

  void Look(const Cells& cells) {
    hasRows_ = true;
    for (std::size_t i = 0; i < cells.size(); ++i)
      if (columns_[i].type == kColumnDuration && HasWrappedCount(cells[i])) hasWrapped_[i] = true;
  }

  std::vector<std::string> Sentences() const {
    std::vector<std::string> all;
    for (std::size_t i = 0; hasRows_ && i < columns_.size(); ++i) {
      const std::string name = "'" + columns_[i].name + "'";
      if (columns_[i].type == kColumnUnknown)
        all.push_back("column " + name + " has a type that the library does not read; its cells are empty");
      if (columns_[i].type == kColumnUrl)
        all.push_back("the links of the URL column " + name +
                      " do not arrive; let the script answer with strings");
      if (hasWrapped_[i])
        all.push_back("a count of a duration in column " + name +
                      " does not fit 16 bits and arrived changed");
    }
    return all;
  }

 private:
  const Columns& columns_;
  std::vector<bool> hasWrapped_;
  bool hasRows_ = false;
};

std::vector<std::string> Walk(RecordTable& table, const ListForm& form, std::ostream& out) {
  const std::unique_ptr<RowWriter> writer = MakeWriter(form, table.Columns(), out);
  Losses losses(table.Columns());
  Cells cells;
  while (table.Next(cells)) {
    ThrowIfInterrupted();
    writer->Add(cells);
    losses.Look(cells);
    CheckWritten(out);
  }
  writer->Finish();
  out << std::flush;
  CheckWritten(out);
  return losses.Sentences();
}

Failure Explained(const _com_error& error) {
  if (error.Error() == E_OUTOFMEMORY) return Failure(ExitStatus::kFault, "out of memory");
  return Failure(ExitStatus::kAnswer, MessageOf(error));
}

}  // namespace

std::vector<std::string> WriteRecordList(IRecordListPtr list, const ListForm& form, std::ostream& out) {
  try {
    RecordTable table(std::move(list));
    return Walk(table, form, out);
  } catch (const _com_error& error) {
    out << std::flush;  // rows first, then the message
    throw Explained(error);
  }
}

void CheckWritten(const std::ostream& out) {
  if (out) return;
  ThrowIfInterrupted();
  throw FailedOutput(out, "cannot write the answer to standard output");
}

}  // namespace qv::cli

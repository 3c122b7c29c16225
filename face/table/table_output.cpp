// Tables as CSV, as JSON, and as text for people.
#include <ostream>
#include <sstream>

#include "face/table/aligned_text.h"
#include "face/text/csv_text.h"
#include "scriptwells/value.h"

namespace scriptwells {

namespace {

// Without the stream's format flags.
void Write(std::ostream& out, const std::string& text) {
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

std::string CsvHeads(const Table& table) {
  std::string line;
  for (const Column& column : table.Columns()) {
    if (&column != &table.Columns().front()) line += ',';
    line += CsvField(column.name, "");
  }
  return line + "\r\n";
}

std::string CsvCell(const Value& value, std::string_view null, bool isOnly) {
  if (value.IsEmpty()) return std::string(null);
  const std::string text = value.ToString();
  return isOnly ? CsvOnlyField(text, null) : CsvField(text, null);
}

std::string CsvLine(const Row& row, std::string_view null) {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (i != 0) line += ',';
    line += CsvCell(row[i].Get(), null, row.size() == 1);
  }
  return line + "\r\n";
}

std::string JsonOf(const Column& column) {
  const std::string name = Value(column.name).ToJson();
  return R"({"name":)" + name + R"(,"displayName":)" + name + R"(,"type":)" +
         Value(column.typeName).ToJson() + "}";
}

std::string JsonHeads(const Table& table) {
  std::string heads;
  for (const Column& column : table.Columns()) {
    if (!heads.empty()) heads += ',';
    heads += JsonOf(column);
  }
  return heads;
}

std::string JsonOf(const Row& row) {
  std::string cells = "[";
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (i != 0) cells += ',';
    cells += row[i].Get().ToJson();
  }
  return cells + "]";
}

bool IsNumber(Type type) {
  return type >= Type::kByte && type <= Type::kDouble;
}

}  // namespace

void Table::WriteCsv(std::ostream& out, std::string_view null) const {
  CheckCsvNull(null);
  Write(out, CsvHeads(*this));
  for (std::size_t i = 0; i < size() && out; ++i) Write(out, CsvLine((*this)[i], null));
}

std::string Table::ToCsv(std::string_view null) const {
  std::ostringstream out;
  WriteCsv(out, null);
  return out.str();
}

void Table::WriteJson(std::ostream& out) const {
  Write(out, R"({"columns":[)" + JsonHeads(*this) + R"(],"rows":[)");
  for (std::size_t i = 0; i < size() && out; ++i) Write(out, (i == 0 ? "" : ",") + JsonOf((*this)[i]));
  Write(out, "]}");
}

std::string Table::ToJson() const {
  std::ostringstream out;
  WriteJson(out);
  return out.str();
}

std::string Table::ToString() const {
  AlignedText text;
  for (const Column& column : Columns()) text.AddColumn(column.name, IsNumber(column.type));
  for (const Row& row : *this)
    for (std::size_t i = 0; i < row.size(); ++i) text.AddCell(row[i].ToString());
  return text.Lines();
}

}  // namespace scriptwells

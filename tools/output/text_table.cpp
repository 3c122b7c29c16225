#include "tools/output/text_table.h"

#include <libsmartcols/libsmartcols.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

#include "tools/output/cell_width.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLeastCut = 4;

struct Free {
  void operator()(char* text) const { std::free(text); }
};

// The table library fails here only without memory.
void Check(int result) {
  if (result != 0) throw std::bad_alloc();
}

// Heads are an ordinary line here, since the table library prints its own heads only if there are rows.
void Prepare(libscols_table* table, const std::vector<TextColumn>& columns) {
  Check(scols_table_enable_noheadings(table, 1));
  Check(scols_table_set_termforce(table, SCOLS_TERMFORCE_NEVER));
  for (const TextColumn& column : columns)
    if (scols_table_new_column(table, "", 0, column.isNumber ? SCOLS_FL_RIGHT : 0) == nullptr)
      throw std::bad_alloc();
}

bool IsCut(const TextColumn& column) {
  return !column.isNumber && !column.isWhole;
}

std::vector<std::string> HeadsOf(const std::vector<TextColumn>& columns) {
  std::vector<std::string> heads;
  heads.reserve(columns.size());
  for (const TextColumn& column : columns) heads.push_back(column.head);
  return heads;
}

}  // namespace

void TextTable::Unref::operator()(libscols_table* table) const {
  scols_unref_table(table);
}

TextTable::TextTable(std::vector<TextColumn> columns)
    : columns_(std::move(columns)), widths_(columns_.size(), 0), table_(scols_new_table()) {
  if (!table_) throw std::bad_alloc();
  Prepare(table_.get(), columns_);
  AddLine(HeadsOf(columns_));
}

TextTable::~TextTable() = default;

void TextTable::AddRow(const std::vector<std::string>& texts) {
  AddLine(texts);
}

void TextTable::AddLine(const std::vector<std::string>& texts) {
  libscols_line* line = scols_table_new_line(table_.get(), nullptr);
  if (line == nullptr) throw std::bad_alloc();
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    Check(scols_line_set_data(line, i, texts[i].c_str()));
    widths_[i] = std::max(widths_[i], ShownWidth(texts[i]));
  }
}

bool TextTable::Fits(std::size_t limit, std::size_t available) const {
  std::size_t total = columns_.size() - 1;  // blanks between
  for (std::size_t i = 0; i < columns_.size() && total <= available; ++i)
    total += IsCut(columns_[i]) ? std::min(widths_[i], limit) : widths_[i];
  return total <= available;
}

// The greatest width of texts with which the lines fit.
std::size_t TextTable::LimitFor(std::size_t width) const {
  std::size_t least = kLeastCut;
  std::size_t greatest = std::max(width, kLeastCut);
  while (least < greatest) {
    const std::size_t middle = (least + greatest + 1) / 2;
    if (Fits(middle, width))
      least = middle;
    else
      greatest = middle - 1;
  }
  return least;
}

// Cuts the texts and escapes what the table library does not escape.
void TextTable::FinishLine(libscols_line* line, std::size_t limit) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const char* data = scols_cell_get_data(scols_line_get_cell(line, i));
    if (data == nullptr) continue;
    const std::string text = data;
    const bool cuts = IsCut(columns_[i]) && widths_[i] > limit;
    const std::string shown = EscapeFormatCharacters(cuts ? CutToWidth(text, limit) : text);
    if (shown != text) Check(scols_line_set_data(line, i, shown.c_str()));
  }
}

void TextTable::FinishLines(std::size_t limit) {
  const std::unique_ptr<libscols_iter, void (*)(libscols_iter*)> lines(scols_new_iter(SCOLS_ITER_FORWARD),
                                                                       scols_free_iter);
  if (!lines) throw std::bad_alloc();
  libscols_line* line = nullptr;
  while (scols_table_next_line(table_.get(), lines.get(), &line) == 0) FinishLine(line, limit);
}

std::string TextTable::Format(std::size_t width) {
  if (columns_.empty()) return "";
  const bool cuts = width != 0 && !Fits(width, width);
  FinishLines(cuts ? LimitFor(width) : std::numeric_limits<std::size_t>::max());
  char* text = nullptr;
  Check(scols_print_table_to_string(table_.get(), &text));
  const std::unique_ptr<char, Free> owner(text);
  std::string result = text;
  if (result.empty() || result.back() != '\n') result += '\n';
  return result;
}

std::string FormatColumns(const std::vector<std::string>& heads,
                          const std::vector<std::vector<std::string>>& rows) {
  std::vector<TextColumn> columns;
  columns.reserve(heads.size());
  for (const std::string& head : heads) columns.push_back({head});
  TextTable table(columns);
  for (const std::vector<std::string>& row : rows) table.AddRow(row);
  return table.Format(0);
}

std::string FormatTable(const std::vector<TableRow>& rows) {
  std::vector<std::vector<std::string>> texts;
  texts.reserve(rows.size());
  for (const TableRow& row : rows) texts.push_back({row.name, row.type, row.value});
  return FormatColumns({"NAME", "TYPE", "VALUE"}, texts);
}

}  // namespace qv::cli

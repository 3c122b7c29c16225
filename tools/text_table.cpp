#include "tools/text_table.h"

#include <libsmartcols/libsmartcols.h>

#include <cstdlib>
#include <memory>
#include <new>

namespace qv::cli {

namespace {

struct Unref {
  void operator()(libscols_table* table) const { scols_unref_table(table); }
};
using TablePtr = std::unique_ptr<libscols_table, Unref>;

struct Free {
  void operator()(char* text) const { std::free(text); }
};

// The library's only failure here is lack of memory.
void Check(int result) {
  if (result != 0) throw std::bad_alloc();
}

TablePtr MakeTable(const std::vector<std::string>& heads) {
  TablePtr table(scols_new_table());
  if (!table) throw std::bad_alloc();
  for (const std::string& head : heads)
    if (scols_table_new_column(table.get(), head.c_str(), 0, 0) == nullptr) throw std::bad_alloc();
  return table;
}

void AddRow(libscols_table* table, const std::vector<std::string>& row) {
  libscols_line* line = scols_table_new_line(table, nullptr);
  if (line == nullptr) throw std::bad_alloc();
  for (std::size_t i = 0; i < row.size(); ++i) Check(scols_line_set_data(line, i, row[i].c_str()));
}

}  // namespace

std::string FormatColumns(const std::vector<std::string>& heads,
                          const std::vector<std::vector<std::string>>& rows) {
  const TablePtr table = MakeTable(heads);
  for (const std::vector<std::string>& row : rows) AddRow(table.get(), row);
  char* text = nullptr;
  Check(scols_print_table_to_string(table.get(), &text));
  const std::unique_ptr<char, Free> owner(text);
  std::string result = text;
  if (result.empty() || result.back() != '\n') result += '\n';
  return result;
}

std::string FormatTable(const std::vector<TableRow>& rows) {
  std::vector<std::vector<std::string>> texts;
  for (const TableRow& row : rows) texts.push_back({row.name, row.type, row.value});
  return FormatColumns({"NAME", "TYPE", "VALUE"}, texts);
}

}  // namespace qv::cli

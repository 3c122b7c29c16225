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

TablePtr MakeTable() {
  TablePtr table(scols_new_table());
  if (!table) throw std::bad_alloc();
  for (const char* name : {"NAME", "TYPE", "VALUE"})
    if (scols_table_new_column(table.get(), name, 0, 0) == nullptr) throw std::bad_alloc();
  return table;
}

void AddRow(libscols_table* table, const TableRow& row) {
  libscols_line* line = scols_table_new_line(table, nullptr);
  if (line == nullptr) throw std::bad_alloc();
  Check(scols_line_set_data(line, 0, row.name.c_str()));
  Check(scols_line_set_data(line, 1, row.type.c_str()));
  Check(scols_line_set_data(line, 2, row.value.c_str()));
}

}  // namespace

std::string FormatTable(const std::vector<TableRow>& rows) {
  const TablePtr table = MakeTable();
  for (const TableRow& row : rows) AddRow(table.get(), row);
  char* text = nullptr;
  Check(scols_print_table_to_string(table.get(), &text));
  const std::unique_ptr<char, Free> owner(text);
  std::string result = text;
  if (result.empty() || result.back() != '\n') result += '\n';
  return result;
}

}  // namespace qv::cli

#include "table.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "column_data.h"
#include "face/table/table_access.h"
#include "from_value.h"
#include "python_types.h"
#include "scriptwells/value.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

struct RowView {
  Table table;
  std::size_t index;
};

struct RowIterator {
  Table table;
  std::size_t next = 0;
};

py::object CellOf(const Table& table, std::size_t row, std::size_t column) {
  return FromValue(table[row][column].Get());
}

// An index of Python, where -1 is the last.
std::size_t Index(py::ssize_t index, std::size_t size, const char* what) {
  const auto count = static_cast<py::ssize_t>(size);
  const py::ssize_t found = index < 0 ? index + count : index;
  if (found < 0 || found >= count)
    throw py::index_error("there is no " + std::string(what) + " " + std::to_string(index) + "; there are " +
                          std::to_string(size));
  return static_cast<std::size_t>(found);
}

std::size_t ColumnNamed(const Table& table, const std::string& name) {
  try {
    return table.IndexOf(name);
  } catch (const Error& error) {
    throw py::key_error(error.message());
  }
}

std::vector<py::str> Names(const Table& table) {
  std::vector<py::str> names;
  for (const Column& column : table.Columns()) names.push_back(Text(column.name));
  return names;
}

// Of several columns with one name the first, as everywhere.
py::dict DictOf(const Table& table, std::size_t row, const std::vector<py::str>& names) {
  py::dict dict;
  const Row cells = table[row];
  for (std::size_t column = 0; column < names.size(); ++column) {
    const py::object value = FromValue(cells[column].Get());
    if (PyDict_SetDefault(dict.ptr(), names[column].ptr(), value.ptr()) == nullptr)
      throw py::error_already_set();
  }
  return dict;
}

py::list ValuesOf(const RowView& row) {
  py::list values;
  for (std::size_t column = 0; column < row.table.Columns().size(); ++column)
    values.append(CellOf(row.table, row.index, column));
  return values;
}

py::object Attribute(const RowView& row, const std::string& name) {
  const std::vector<Column>& columns = row.table.Columns();
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [&name](const Column& column) { return column.name == name; });
  if (found == columns.end()) throw py::attribute_error("the row has no column '" + name + "'");
  return CellOf(row.table, row.index, static_cast<std::size_t>(found - columns.begin()));
}

std::string Shown(const RowView& row) {
  std::string text = "Row(";
  for (std::size_t column = 0; column < row.table.Columns().size(); ++column)
    text += (column == 0 ? "" : ", ") + row.table.Columns()[column].name + "=" +
            std::string(py::repr(CellOf(row.table, row.index, column)));
  return text + ")";
}

bool AreSame(const RowView& a, const RowView& b) {
  const std::vector<Column>& columns = a.table.Columns();
  const std::vector<Column>& others = b.table.Columns();
  if (columns.size() != others.size()) return false;
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (columns[i].name != others[i].name || a.table[a.index][i].Get() != b.table[b.index][i].Get())
      return false;
  return true;
}

py::tuple ColumnsOf(const Table& table) {
  py::tuple columns(table.Columns().size());
  std::size_t at = 0;
  for (const Column& column : table.Columns())
    columns[at++] =
        PythonTypes::Get().column(Text(column.name), ToString(column.type), Text(column.typeName));
  return columns;
}

py::list Dicts(const Table& table) {
  const std::vector<py::str> names = Names(table);
  py::list dicts(table.size());
  for (std::size_t row = 0; row < table.size(); ++row) dicts[row] = DictOf(table, row, names);
  return dicts;
}

// Of a record list of the module _dispatch.
Table CellsOf(const py::capsule& list) {
  if (list.name() == nullptr || std::string_view(list.name()) != "scriptwells.IRecordList")
    throw py::type_error("this is no record list");
  return TableAccess::Make(qv::IRecordListPtr(static_cast<qv::IRecordList*>(list.get_pointer())));
}

void DefineRow(py::module_& module) {
  py::class_<RowView>(module, "Row",
                      "One row of a table: row.city, row['city'] and row[0] are cells.\n\n"
                      "A column whose name is that of a method is there as a key only.")
      .def("__getitem__",
           [](const RowView& row, py::ssize_t column) {
             return CellOf(row.table, row.index, Index(column, row.table.Columns().size(), "column"));
           })
      .def("__getitem__",
           [](const RowView& row, const std::string& column) {
             return CellOf(row.table, row.index, ColumnNamed(row.table, column));
           })
      .def("__getitem__",
           [](const RowView&, const py::object& column) -> py::object {
             throw py::type_error("a column is found by its name or position, not by a " +
                                  std::string(py::str(py::type::handle_of(column).attr("__name__"))));
           })
      .def("__getattr__", &Attribute)
      .def("__len__", [](const RowView& row) { return row.table.Columns().size(); })
      .def("__iter__", [](const RowView& row) { return py::iter(ValuesOf(row)); })
      .def("__repr__", &Shown)
      .def("__eq__", [](const RowView& row, const RowView& other) { return AreSame(row, other); })
      .def("__eq__", [](const RowView&, const py::object&) { return false; })
      .def("__dir__",
           [](const py::object& self) {
             py::list names = py::module_::import("builtins").attr("object").attr("__dir__")(self);
             for (const py::str& name : Names(self.cast<const RowView&>().table)) names.append(name);
             return names;
           })
      .def(
          "keys", [](const RowView& row) { return Names(row.table); },
          "keys(self, /)\n--\n\nThe names of the columns.")
      .def(
          "to_dict", [](const RowView& row) { return DictOf(row.table, row.index, Names(row.table)); },
          "to_dict(self, /)\n--\n\nNames and values; of several columns with one name the first.")
      .attr("__hash__") = py::none();
  py::class_<RowIterator>(module, "RowIterator")
      .def("__iter__", [](const py::object& self) { return self; })
      .def("__next__", [](RowIterator& rows) {
        if (rows.next >= rows.table.size()) throw py::stop_iteration();
        return RowView{rows.table, rows.next++};
      });
}

}  // namespace

void DefineTable(py::module_& module) {
  DefineRow(module);
  module.def("cells_of", &CellsOf);
  py::class_<Table>(module, "Cells")
      .def("row",
           [](const Table& table, py::ssize_t row) {
             return RowView{table, Index(row, table.size(), "row")};
           })
      .def("rows", [](const Table& table) { return RowIterator{table}; })
      .def("columns", &ColumnsOf)
      .def("column", [](const Table& table,
                        const std::string& name) { return ListOfColumn(table, ColumnNamed(table, name)); })
      .def("column_data", &DataOfColumn)
      .def("to_dicts", &Dicts)
      .def("to_csv", [](const Table& table, const std::string& null) { return Text(table.ToCsv(null)); })
      .def("to_json", [](const Table& table) { return Text(table.ToJson()); })
      .def("__str__", [](const Table& table) { return Text(table.ToString()); })
      .def("__len__", &Table::size)
      .def("__eq__", [](const Table& a, const Table& b) { return a == b; });
}

}  // namespace scriptwells::python

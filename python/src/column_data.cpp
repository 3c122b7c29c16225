#include "column_data.h"

#include <cmath>
#include <string>
#include <vector>

#include "from_value.h"
#include "scriptwells/value.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

std::int64_t MillisecondsOf(const Value& value) {
  return value.As<DateTime>().ToTimePoint().time_since_epoch().count();
}

std::int64_t MicrosecondsOf(const Value& value) {
  const auto duration = value.As<Duration>();
  if (duration.years != 0 || duration.months != 0)
    throw ConversionError(Phase::kConversion, "years and months have no fixed length");
  const std::int64_t minutes = (duration.days * std::int64_t{24} + duration.hours) * 60 + duration.minutes;
  const std::int64_t span = minutes * 60'000'000 + std::llround(duration.seconds * 1e6);
  return duration.negative ? -span : span;
}

template <class T>
T NumberOf(const Value& value) {
  return value.As<T>();
}

template <class T, T (*Read)(const Value&)>
py::tuple Fill(const char* type, const Table& table, std::size_t column) {
  std::vector<T> values(table.size());
  std::string empty(table.size(), '\0');
  for (std::size_t row = 0; row < table.size(); ++row) {
    const Value value = table[row][column].Get();
    if (value.IsEmpty())
      empty[row] = '\1';
    else
      values[row] = Read(value);
  }
  const auto* const bytes = reinterpret_cast<const char*>(values.data());
  return py::make_tuple(type, py::bytes(bytes, values.size() * sizeof(T)), py::bytes(empty));
}

std::uint8_t FlagOf(const Value& value) {
  return value.As<bool>() ? 1 : 0;
}

struct FillRow {
  Type type;
  const char* numpy;
  py::tuple (*fill)(const char* type, const Table& table, std::size_t column);
};
constexpr FillRow kFills[] = {
    {Type::kBoolean, "?", &Fill<std::uint8_t, &FlagOf>},
    {Type::kByte, "<i8", &Fill<std::int64_t, &NumberOf<std::int64_t>>},
    {Type::kShort, "<i8", &Fill<std::int64_t, &NumberOf<std::int64_t>>},
    {Type::kInt, "<i8", &Fill<std::int64_t, &NumberOf<std::int64_t>>},
    {Type::kDouble, "<f8", &Fill<double, &NumberOf<double>>},
    {Type::kDate, "<M8[ms]", &Fill<std::int64_t, &MillisecondsOf>},
    {Type::kDateTime, "<M8[ms]", &Fill<std::int64_t, &MillisecondsOf>},
    {Type::kDuration, "<m8[us]", &Fill<std::int64_t, &MicrosecondsOf>},
};

}  // namespace

py::list ListOfColumn(const Table& table, std::size_t column) {
  py::list values(table.size());
  for (std::size_t row = 0; row < table.size(); ++row)
    PyList_SET_ITEM(values.ptr(), static_cast<py::ssize_t>(row),
                    FromValue(table[row][column].Get()).release().ptr());
  return values;
}

py::tuple DataOfColumn(const Table& table, std::size_t column) {
  try {
    for (const FillRow& row : kFills)
      if (row.type == table.Columns()[column].type) return row.fill(row.numpy, table, column);
  } catch (const ConversionError&) {  // a value that only Python's own types hold
  }
  return py::make_tuple("O", ListOfColumn(table, column), py::none());
}

}  // namespace scriptwells::python

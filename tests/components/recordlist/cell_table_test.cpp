// The cells of a table in their chunks, and which lists show them to the library's own reader and writer.
#include "components/recordlist/cell_table.h"

#include <gtest/gtest.h>

#include <vector>

#include "components/recordlist/list_helpers.h"
#include "components/recordlist/record_list_object.h"
#include "fixtures/calling_object.h"
#include "fixtures/fake_record_list.h"
#include "qvscriptwells/class_registry.h"

namespace qv {
namespace {

CellTable TableOf(std::size_t columns) {
  CellTable table;
  for (std::size_t column = 0; column < columns; ++column) table.AddColumn();
  return table;
}
std::int32_t NumberOf(std::size_t row, std::size_t column) {
  return static_cast<std::int32_t>(row * 10000 + column);
}
// Numbers each cell and locks every third row.
void AddNumberedRow(CellTable& table) {
  const std::size_t row = table.Rows();
  Variant* const cells = table.AddRow(row % 3 == 0);
  for (std::size_t column = 0; column < table.Columns(); ++column) {
    ASSERT_EQ(cells[column].Tag(), VT_EMPTY);
    cells[column] = Int(NumberOf(row, column));
  }
}
void ExpectNumbers(CellTable& table, std::size_t columns) {
  for (std::size_t row = 0; row < table.Rows(); ++row) {
    ASSERT_EQ(table.IsLocked(row), row % 3 == 0) << row;
    for (std::size_t column = 0; column < columns; ++column)
      ASSERT_EQ(table.Cell(row, column).Data().intVal, NumberOf(row, column)) << row << " " << column;
  }
}

TEST(CellTable, EachCellHasItsPlaceWhateverTheShape) {
  for (const std::size_t columns :
       {1U, 2U, 3U, 7U, 10U, 100U, 341U, 512U, 513U, 1024U, 3000U, 4095U, 4096U, 4097U}) {
    SCOPED_TRACE(columns);
    CellTable table = TableOf(columns);
    const std::size_t rows = columns < 100 ? 5000 : 40;
    for (std::size_t row = 0; row < rows; ++row) AddNumberedRow(table);
    EXPECT_EQ(table.Rows(), rows);
    ExpectNumbers(table, columns);
  }
}

TEST(CellTable, CellsStayWhereTheyAreWhenRowsAreAdded) {
  CellTable table = TableOf(3);
  std::vector<const Variant*> places;
  places.reserve(3000);
  for (std::size_t row = 0; row < 3000; ++row) places.push_back(table.AddRow());
  for (std::size_t row = 0; row < 3000; ++row) EXPECT_EQ(&table.Cell(row, 0), places[row]) << row;
}

TEST(CellTable, NewColumnsKeepValuesAndLocks) {
  CellTable table = TableOf(1);
  for (int row = 0; row < 300; ++row) AddNumberedRow(table);
  for (std::size_t columns = 2; columns < 12; ++columns) {
    table.AddColumn();
    ExpectNumbers(table, 1);
    for (std::size_t row = 0; row < 300; ++row) ASSERT_EQ(table.Cell(row, columns - 1).Tag(), VT_EMPTY);
  }
}

TEST(CellTable, RowsWithoutColumnsAreCounted) {
  CellTable table;
  EXPECT_EQ(table.AddRow(true), nullptr);
  EXPECT_EQ(table.AddRow(), nullptr);
  EXPECT_EQ(table.Rows(), 2U);
  table.AddColumn();
  EXPECT_EQ(table.Cell(1, 0).Tag(), VT_EMPTY);
  EXPECT_TRUE(table.IsLocked(0));
  EXPECT_FALSE(table.IsLocked(1));
}

TEST(CellTable, ValuesGoFromTheFirstToTheLast) {
  std::vector<int> gone;
  CellTable table = TableOf(3);
  for (int row = 0; row < 20; ++row) {
    Variant* const cells = table.AddRow();
    for (int column = 0; column < 3; ++column) {
      auto* const object = new CallingObject;
      object->OnEnd([&gone, number = row * 3 + column] { gone.push_back(number); });
      cells[column] = Variant::FromObject(object);
    }
  }
  table.Clear();
  ASSERT_EQ(gone.size(), 60U);
  for (int number = 0; number < 60; ++number) EXPECT_EQ(gone[static_cast<std::size_t>(number)], number);
}

TEST(CellsOf, ListOfTheBuiltInClassShowsItsCells) {
  const IRecordListPtr list = NewList();
  AddNumbers(list, 3);
  CellTable* const table = CellsOf(list.get());
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->Rows(), 3U);
  EXPECT_EQ(table->Cell(2, 0).Data().intVal, 3);
  EXPECT_NE(CellsOf(NewList().get()), table);
}

TEST(CellsOf, AnyOtherListIsNotEvenCalled) {
  NewList();
  EXPECT_EQ(CellsOf(nullptr), nullptr);
  FakeRecordList fake;
  const IRecordListPtr list = fake.MakeList({});
  EXPECT_EQ(CellsOf(list.get()), nullptr);
  EXPECT_TRUE(fake.Calls().empty());
}

}  // namespace
}  // namespace qv

// Columns, rows and cells of a table that a script returned.
#include "tools/output/record_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "fixtures/variant_makers.h"
#include "qvscriptwells/com_error.h"
#include "tests/tools/table_builder.h"

namespace qv::cli {
namespace {

using testing::BuildTable;

TEST(RecordTable, ColumnTypesHaveNames) {
  const std::map<std::int32_t, const char*> names = {
      {1, "string"},    {2, "boolean"}, {3, "float"},  {4, "double"}, {5, "duration"}, {6, "blob"},
      {8, "url"},       {10, "int"},    {11, "short"}, {12, "long"},  {13, "byte"},    {14, "unsigned short"},
      {16, "datetime"}, {17, "time"},   {18, "date"},  {23, "url"},   {0, "unknown"},  {7, "unknown"},
      {-1, "unknown"},  {99, "unknown"}};
  for (const auto& [type, name] : names) EXPECT_EQ(ColumnTypeName(type), name) << type;
  for (const std::int32_t type : {3, 4, 10, 11, 12, 13, 14}) EXPECT_TRUE(IsNumberColumn(type)) << type;
  for (const std::int32_t type : {0, 1, 2, 5, 6, 8, 16, 17, 18, 23, 7, -1})
    EXPECT_FALSE(IsNumberColumn(type)) << type;
}

TEST(RecordTable, ColumnsHaveNamesDisplayNamesAndTypes) {
  const RecordTable table(
      BuildTable({{u"a", kColumnInt, u"The A"}, {u"b", kColumnString}, {u"c", kColumnDate, u""}}, {}));
  ASSERT_EQ(table.Columns().size(), 3U);
  EXPECT_EQ(table.Columns()[0].name, "a");
  EXPECT_EQ(table.Columns()[0].displayName, "The A");
  EXPECT_EQ(table.Columns()[0].type, 10);
  EXPECT_EQ(table.Columns()[1].displayName, "b");
  EXPECT_EQ(table.Columns()[2].displayName, "");
}

TEST(RecordTable, RowsComeInOrderAndOnce) {
  RecordTable table(BuildTable({{u"a", kColumnInt}, {u"b", kColumnString}},
                               {{Int(1), Text(u"x")}, {Variant(), Variant()}}));
  std::vector<Variant> cells;
  ASSERT_TRUE(table.Next(cells));
  ASSERT_EQ(cells.size(), 2U);
  EXPECT_EQ(cells[0].Data().intVal, 1);
  EXPECT_EQ(ToUtf8(cells[1].Text()), "x");
  ASSERT_TRUE(table.Next(cells));
  ASSERT_EQ(cells.size(), 2U);
  for (const Variant& cell : cells) EXPECT_EQ(cell.Tag(), VT_EMPTY);
  for (int again = 0; again < 2; ++again) EXPECT_FALSE(table.Next(cells));
}

TEST(RecordTable, PointsInTimeHaveTheFormOfTheirColumn) {
  struct Row {
    double serial;
    std::int32_t type;
    const char* text;
  };
  const Row rows[] = {{45356, kColumnDateTime, "2024-03-05T00:00:00"},
                      {0.5, kColumnDateTime, "1899-12-30T12:00:00"},
                      {45356.5, kColumnDateTime, "2024-03-05T12:00:00"},
                      {-1 + 18000000 / 86400000.0, kColumnDateTime, "1899-12-29T05:00:00"},
                      {0, kColumnDate, "1899-12-30"},
                      {45356, kColumnDate, "2024-03-05"},
                      {45356.5, kColumnDate, "2024-03-05T12:00:00"},
                      {0.5, kColumnTime, "12:00:00"},
                      {0, kColumnTime, "00:00:00"},
                      {45356, kColumnString, "2024-03-05"}};
  for (const Row& row : rows)
    EXPECT_EQ(CellText(Date(row.serial), row.type), row.text) << row.serial << " " << row.type;
  for (const std::int32_t type : {16, 17, 18}) {
    EXPECT_EQ(CellText(Date(2958466), type), "2958466");
    EXPECT_EQ(CellJson(Date(2958466), type), "\"2958466\"");
    EXPECT_EQ(CellJson(Date(std::nan("")), type), "\"NaN\"");
  }
}

TEST(RecordTable, CellsHaveTheJsonOfSingleValues) {
  struct Row {
    Variant cell;
    std::int32_t type;
    const char* json;
  };
  const Row rows[] = {{R8(0.1), kColumnDouble, "0.1"},
                      {R8(std::nan("")), kColumnDouble, "\"NaN\""},
                      {I8(9007199254740993), kColumnLong, "\"9007199254740993\""},
                      {Bool(true), kColumnBoolean, "true"},
                      {Text(u"a\"\n"), kColumnString, R"("a\"\n")"},
                      {Date(45356), kColumnDateTime, "\"2024-03-05T00:00:00\""},
                      {Variant::FromObject(CreateDuration(u"P1D").get()), kColumnDuration, "\"P1D\""},
                      {Variant(), kColumnInt, "null"}};
  for (const Row& row : rows) EXPECT_EQ(CellJson(row.cell, row.type), row.json);
}

}  // namespace
}  // namespace qv::cli

#include "tools/record_table.h"

#include <gtest/gtest.h>

#include <cmath>

#include "qvscriptwells/com_error.h"
#include "tests/tools/table_builder.h"

namespace qv::cli {
namespace {

using testing::BuildTable;

TEST(RecordTable, ColumnTypesHaveNames) {
  const std::pair<std::int32_t, const char*> names[] = {{0, "unknown"},
                                                        {1, "string"},
                                                        {2, "boolean"},
                                                        {3, "float"},
                                                        {4, "double"},
                                                        {5, "duration"},
                                                        {6, "blob"},
                                                        {8, "url"},
                                                        {10, "int"},
                                                        {11, "short"},
                                                        {12, "long"},
                                                        {13, "byte"},
                                                        {14, "unsigned short"},
                                                        {16, "datetime"},
                                                        {17, "time"},
                                                        {18, "date"},
                                                        {23, "url"},
                                                        {7, "unknown"},
                                                        {-1, "unknown"},
                                                        {99, "unknown"}};
  for (const auto& [type, name] : names) EXPECT_EQ(ColumnTypeName(type), name) << type;
}

TEST(RecordTable, NumbersAreTheNumericTypes) {
  for (const std::int32_t type : {3, 4, 10, 11, 12, 13, 14}) EXPECT_TRUE(IsNumberColumn(type)) << type;
  for (const std::int32_t type : {0, 1, 2, 5, 6, 8, 16, 17, 18, 23, 7, -1})
    EXPECT_FALSE(IsNumberColumn(type)) << type;
}

TEST(RecordTable, ColumnsHaveNamesDisplayNamesAndTypes) {
  const RecordTable table(
      BuildTable({{u"a", kColumnInt, u"The A"}, {u"b", kColumnString}, {u"c", kColumnDate, u""}}, {}));
  ASSERT_EQ(table.Columns().size(), 3u);
  EXPECT_EQ(table.Columns()[0].name, "a");
  EXPECT_EQ(table.Columns()[0].displayName, "The A");
  EXPECT_EQ(table.Columns()[0].type, 10);
  EXPECT_EQ(table.Columns()[1].displayName, "b");
  EXPECT_EQ(table.Columns()[2].displayName, "");
}

TEST(RecordTable, RowsComeInTheirOrderOnce) {
  RecordTable table(BuildTable({{u"a", kColumnInt}, {u"b", kColumnString}},
                               {{Variant::FromInt(1), Variant::FromString(u"x")}, {Variant(), Variant()}}));
  std::vector<Variant> cells;
  ASSERT_TRUE(table.Next(cells));
  ASSERT_EQ(cells.size(), 2u);
  EXPECT_EQ(cells[0].Data().intVal, 1);
  EXPECT_EQ(ToUtf8(cells[1].Text()), "x");
  ASSERT_TRUE(table.Next(cells));
  ASSERT_EQ(cells.size(), 2u);
  EXPECT_EQ(cells[0].Tag(), VT_EMPTY);
  EXPECT_EQ(cells[1].Tag(), VT_EMPTY);
  EXPECT_FALSE(table.Next(cells));
  EXPECT_FALSE(table.Next(cells));
}

TEST(RecordTable, PointsInTimeKeepTheirFormInTheirColumn) {
  const auto text = [](double serial, std::int32_t type) {
    return CellText(Variant::FromDate(serial), type);
  };
  EXPECT_EQ(text(45356, kColumnDateTime), "2024-03-05T00:00:00");
  EXPECT_EQ(text(0.5, kColumnDateTime), "1899-12-30T12:00:00");
  EXPECT_EQ(text(45356.5, kColumnDateTime), "2024-03-05T12:00:00");
  EXPECT_EQ(text(-1 + 18000000 / 86400000.0, kColumnDateTime), "1899-12-29T05:00:00");
  EXPECT_EQ(text(0, kColumnDate), "1899-12-30");
  EXPECT_EQ(text(45356, kColumnDate), "2024-03-05");
  EXPECT_EQ(text(45356.5, kColumnDate), "2024-03-05T12:00:00");
  EXPECT_EQ(text(0.5, kColumnTime), "12:00:00");
  EXPECT_EQ(text(0, kColumnTime), "00:00:00");
  EXPECT_EQ(text(45356, kColumnString), "2024-03-05");
}

TEST(RecordTable, DateThatIsNoneIsItsNumber) {
  for (const std::int32_t type : {16, 17, 18}) {
    EXPECT_EQ(CellText(Variant::FromDate(2958466), type), "2958466");
    EXPECT_EQ(CellJson(Variant::FromDate(2958466), type), "\"2958466\"");
    EXPECT_EQ(CellJson(Variant::FromDate(std::nan("")), type), "\"NaN\"");
  }
}

TEST(RecordTable, CellsHaveTheJsonOfSingleValues) {
  EXPECT_EQ(CellJson(Variant::FromDouble(0.1), kColumnDouble), "0.1");
  EXPECT_EQ(CellJson(Variant::FromDouble(std::nan("")), kColumnDouble), "\"NaN\"");
  EXPECT_EQ(CellJson(Variant::FromLong(9007199254740993), kColumnLong), "\"9007199254740993\"");
  EXPECT_EQ(CellJson(Variant::FromBool(true), kColumnBoolean), "true");
  EXPECT_EQ(CellJson(Variant::FromString(u"a\"\n"), kColumnString), "\"a\\\"\\n\"");
  EXPECT_EQ(CellJson(Variant::FromDate(45356), kColumnDateTime), "\"2024-03-05T00:00:00\"");
  EXPECT_EQ(CellJson(Variant::FromObject(CreateDuration(u"P1D").get()), kColumnDuration), "\"P1D\"");
  EXPECT_EQ(CellJson(Variant(), kColumnInt), "null");
}

}  // namespace
}  // namespace qv::cli

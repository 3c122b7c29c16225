// Columns, rows and cells by name and index.
#include "scriptwells/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "com/module.h"
#include "tests/face/table/sample_table.h"

namespace scriptwells {
namespace {

TEST(Table, CellsByNameAndIndex) {
  const Table table = Cities();
  ASSERT_EQ(table.size(), 3U);
  EXPECT_FALSE(table.empty());
  EXPECT_EQ(table[0]["city"].As<std::string>(), "Rome");
  EXPECT_EQ(table[0][1].As<int>(), 2748109);
  EXPECT_EQ(table[0][0U].As<std::string>(), "Rome");
  EXPECT_EQ(table[0][short{1}].As<int>(), table[0][1L].As<int>());
  EXPECT_EQ(table[1][std::string("people")].As<long>(), -1);
  EXPECT_EQ(table[1]["founded"].As<Date>(), (Date{1960, 4, 21}));
  EXPECT_EQ(table[1]["city"].Get(), Value("Brasilia, DF"));
  EXPECT_EQ(table[1]["founded"].ToString(), "1960-04-21");
  EXPECT_EQ(table[1].Index(), 1U);
  EXPECT_EQ(table[1].size(), 3U);
  EXPECT_EQ(table.At(1)["people"].As<int>(), -1);
}

TEST(Table, MissingCellsAreEmpty) {
  const Row row = Cities()[2];
  for (const std::size_t column : {0U, 1U, 2U}) {
    EXPECT_TRUE(row[column].IsEmpty());
    EXPECT_TRUE(row[column].Get().IsEmpty());
  }
  EXPECT_EQ(row["people"].As<std::optional<int>>(), std::nullopt);
  EXPECT_EQ(row["people"].ValueOr(7), 7);
  EXPECT_EQ(row["city"].ValueOr<std::string>("none"), "none");
  EXPECT_EQ(Cities()[0]["people"].ValueOr(7), 2748109);
  EXPECT_EQ(Cities()[0]["people"].As<std::optional<int>>(), 2748109);
  EXPECT_FALSE(Cities()[0]["people"].IsEmpty());
}

TEST(Table, CellIsEmptyIfItsValueIs) {
  const Table table = BuiltTable({{u"v", qv::kColumnString}}, {{qv::Variant::Null()},
                                                               {qv::NullText()},
                                                               {qv::Variant::FromObject(nullptr)},
                                                               {qv::Text(u"")},
                                                               {qv::Bool(false)}});
  for (const Row& row : table) EXPECT_EQ(row[0].IsEmpty(), row[0].Get().IsEmpty()) << row.Index();
  EXPECT_TRUE(table[0][0].IsEmpty());
  EXPECT_TRUE(table[1][0].IsEmpty());
  EXPECT_TRUE(table[2][0].IsEmpty());
  EXPECT_FALSE(table[3][0].IsEmpty());
  EXPECT_FALSE(table[4][0].IsEmpty());
}

TEST(Table, ColumnsHaveNameAndType) {
  struct Expected {
    std::int32_t columnType;
    Type type;
    const char* typeName;
  };
  const Expected rows[] = {{qv::kColumnUnknown, Type::kEmpty, "unknown"},
                           {qv::kColumnString, Type::kString, "string"},
                           {qv::kColumnBoolean, Type::kBoolean, "boolean"},
                           {qv::kColumnFloat, Type::kFloat, "float"},
                           {qv::kColumnDouble, Type::kDouble, "double"},
                           {qv::kColumnDuration, Type::kDuration, "duration"},
                           {qv::kColumnBlob, Type::kString, "blob"},
                           {qv::kColumnUrlText, Type::kString, "url"},
                           {qv::kColumnInt, Type::kInt, "int"},
                           {qv::kColumnShort, Type::kShort, "short"},
                           {qv::kColumnLong, Type::kLong, "long"},
                           {qv::kColumnByte, Type::kByte, "byte"},
                           {qv::kColumnUnsignedShort, Type::kInt, "unsigned short"},
                           {qv::kColumnDateTime, Type::kDateTime, "datetime"},
                           {qv::kColumnTime, Type::kTime, "time"},
                           {qv::kColumnDate, Type::kDate, "date"},
                           {qv::kColumnUrl, Type::kLink, "url"},
                           {99, Type::kEmpty, "unknown"}};
  for (const Expected& row : rows) {
    const Column column = BuiltTable({{u"x", row.columnType}}, {}).Columns().at(0);
    EXPECT_EQ(column.name, "x");
    EXPECT_EQ(column.type, row.type) << row.typeName;
    EXPECT_EQ(column.typeName, row.typeName);
  }
}

// The type of a column is that of its cells.
TEST(Table, CellsHaveTheTypeOfTheirColumn) {
  const Table table = BuiltTable(
      {{u"b", qv::kColumnBoolean},
       {u"d", qv::kColumnDouble},
       {u"span", qv::kColumnDuration},
       {u"s", qv::kColumnShort},
       {u"y", qv::kColumnByte},
       {u"dt", qv::kColumnDateTime},
       {u"t", qv::kColumnTime},
       {u"day", qv::kColumnDate},
       {u"blob", qv::kColumnBlob},
       {u"link", qv::kColumnUrl}},
      {{qv::Bool(true), qv::R8(0.1), DurationCell(u"P1DT2H"), qv::I2(-5), qv::I1(7), qv::Date(45356),
        qv::Date(0.25), qv::Date(0), qv::Text(u"AAEC"), qv::Variant::FromObject(qv::CreateUrl().get())}});
  for (std::size_t i = 0; i < table.Columns().size(); ++i)
    EXPECT_EQ(table[0][i].Get().type(), table.Columns()[i].type) << table.Columns()[i].name;
  EXPECT_EQ(table[0]["dt"].ToString(), "2024-03-05T00:00:00");
  EXPECT_EQ(table[0]["day"].As<Date>(), (Date{1899, 12, 30}));
  EXPECT_EQ(table[0]["span"].As<std::chrono::hours>(), std::chrono::hours(26));
}

TEST(Table, FirstColumnOfANameCounts) {
  const Table table = BuiltTable(
      {{u"bb", qv::kColumnInt}, {u"a", qv::kColumnInt}, {u"a", qv::kColumnInt}, {u"bb", qv::kColumnInt}},
      {{qv::Int(1), qv::Int(2), qv::Int(3), qv::Int(4)}});
  EXPECT_EQ(table[0]["a"].As<int>(), 2);
  EXPECT_EQ(table[0]["bb"].As<int>(), 1);
  EXPECT_EQ(table.IndexOf("a"), 1U);
  EXPECT_EQ(table.ColumnAs<int>("bb"), std::vector<int>{1});
}

TEST(Table, EachOfManyColumnsIsFound) {
  std::vector<std::u16string> names;
  for (char16_t c = u'a'; c <= u'z'; ++c) names.push_back(std::u16string(c % 3, u'x') + c);
  // The last ones differ only in their middle.
  for (const char16_t* name : {u"", u"12345678a12345678", u"12345678b12345678", u"12345678c12345678"})
    names.emplace_back(name);
  std::vector<qv::cli::testing::BuiltColumn> columns;
  columns.reserve(names.size());
  for (const std::u16string& name : names) columns.push_back({name.c_str(), qv::kColumnInt});
  const Table table = BuiltTable(columns, {});
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(table.IndexOf(qv::ToUtf8(names[i])), i);
  EXPECT_EQ(Failure([&] { table.IndexOf("A"); }).substr(0, 46),
            "error (conversion): there is no column 'A'; th");
}

TEST(Table, WhatIsNotThereIsNamed) {
  const Table table = Cities();
  EXPECT_EQ(Failure([&] { table[0]["City"]; }),
            "error (conversion): there is no column 'City'; the table has 'city', 'people', 'founded'");
  EXPECT_EQ(Failure([&] { table[0][3]; }),
            "error (conversion): there is no column with the index 3; the table has 3 columns");
  EXPECT_NE(Failure([&] { table[0][-1]; }), "none");
  EXPECT_EQ(Failure([&] { table[3]; }),
            "error (conversion): there is no row with the index 3; the table has 3 rows");
  EXPECT_EQ(Failure([&] { table.ColumnAs<int>("x\n"); }),
            "error (conversion): there is no column 'x\\n'; the table has 'city', 'people', 'founded'");
  EXPECT_EQ(Failure([] { Table().IndexOf("a"); }),
            "error (conversion): there is no column 'a'; the table has no columns");
}

TEST(Table, NamesOfManyColumnsAreCutInTheMessage) {
  const std::vector<qv::cli::testing::BuiltColumn> columns(20, {u"n", qv::kColumnInt});
  const std::string message = Failure([&] { BuiltTable(columns, {}).IndexOf("a"); });
  EXPECT_NE(message.find("'n' and 8 more"), std::string::npos) << message;
}

TEST(Table, WrongConversionNamesColumnAndRow) {
  const Table table = Cities();
  const std::string plain = Failure([] { Value("Brasilia, DF").As<int>(); });
  ASSERT_NE(plain, "none");
  EXPECT_EQ(Failure([&] { table[1]["city"].As<int>(); }), plain + ", in column 'city', row 1");
  EXPECT_EQ(Failure([&] { table.ColumnAs<int>("people"); }),
            Failure([] { Value().As<int>(); }) + ", in column 'people', row 2");
}

TEST(Table, WithoutColumns) {
  const Table table = BuiltTable({}, {{}, {}});
  EXPECT_EQ(table.size(), 2U);
  EXPECT_EQ(table.Columns().size(), 0U);
  EXPECT_EQ(table[1].size(), 0U);
  EXPECT_NE(Failure([&] { table[1][0]; }), "none");
  EXPECT_NE(table, BuiltTable({}, {{}}));
}

TEST(Table, EmptyOne) {
  const Table table;
  EXPECT_TRUE(table.empty());
  EXPECT_TRUE(table.Columns().empty());
  EXPECT_EQ(table.begin(), table.end());
  EXPECT_EQ(table, BuiltTable({}, {}));
  EXPECT_NE(Failure([&] { table[0]; }), "none");
  EXPECT_EQ(table.ToJson(), R"({"columns":[],"rows":[]})");
  EXPECT_EQ(table.ToString(), "");
}

TEST(Table, EqualCellByCell) {
  EXPECT_EQ(Cities(), Cities());
  const Table one = BuiltTable({{u"a", qv::kColumnInt}}, {{qv::Int(1)}});
  EXPECT_NE(one, BuiltTable({{u"a", qv::kColumnInt}}, {{qv::Int(2)}}));
  EXPECT_NE(one, BuiltTable({{u"b", qv::kColumnInt}}, {{qv::Int(1)}}));
  EXPECT_NE(one, BuiltTable({{u"a", qv::kColumnShort}}, {{qv::Int(1)}}));
  EXPECT_NE(one, BuiltTable({{u"a", qv::kColumnInt}}, {{qv::Int(1)}, {qv::Int(1)}}));
  EXPECT_NE(one, BuiltTable({{u"a", qv::kColumnInt}, {u"b", qv::kColumnInt}}, {{qv::Int(1)}}));
  const Table text = BuiltTable({{u"a", qv::kColumnUrlText}}, {});
  EXPECT_NE(text, BuiltTable({{u"a", qv::kColumnString}}, {}));  // both have texts
  const Table nan = BuiltTable({{u"a", qv::kColumnDouble}}, {{qv::R8(std::nan(""))}});
  EXPECT_NE(nan, nan);
  EXPECT_EQ(Value(one), Value(one));
}

TEST(Table, RowsAndCellsKeepIt) {
  const std::int32_t before = qv::ModuleLocks();
  {
    const Row row = Cities()[1];
    EXPECT_EQ(row["people"].As<int>(), -1);
    const Cell cell = Cities()[0]["city"];
    EXPECT_EQ(cell.As<std::string>(), "Rome");
    const TypedRows<std::string> rows = Cities().As<std::string>("city");
    EXPECT_EQ(std::get<0>(rows.At(1)), "Brasilia, DF");
    const Value value = Cities();
    EXPECT_EQ(value.AsTable().size(), 3U);
    EXPECT_EQ(qv::ModuleLocks(), before + 4);
  }
  EXPECT_EQ(qv::ModuleLocks(), before);
}

TEST(Table, AnswerIsTaken) {
  qv::Variant answer =
      qv::Variant::FromObject(qv::cli::testing::BuildTable({{u"a", qv::kColumnInt}}, {}).get());
  const Value value = AnswerOf(std::move(answer));
  EXPECT_EQ(value.type(), Type::kTable);
  EXPECT_EQ(value.AsTable().Columns().at(0).name, "a");
  EXPECT_EQ(AnswerOf(qv::Int(5)), Value(5));
  EXPECT_TRUE(AnswerOf(qv::Variant::FromObject(nullptr)).IsEmpty());
  EXPECT_EQ(AnswerOf(DurationCell(u"P1D")).type(), Type::kDuration);
}

}  // namespace
}  // namespace scriptwells

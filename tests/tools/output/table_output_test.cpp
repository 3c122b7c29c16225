// Tables as text, CSV and JSON, and an output that fails in the middle.
#include "tools/output/table_output.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "face/table/table_access.h"
#include "fixtures/variant_makers.h"
#include "tests/tools/refusal.h"
#include "tests/tools/table_builder.h"

namespace qv::cli {
namespace {

using testing::BuildTable;
using Notes = std::vector<std::string>;

scriptwells::Table Made(IRecordListPtr list) {
  return scriptwells::TableAccess::Make(std::move(list));
}

std::string Written(IRecordListPtr list, const TableForm& form) {
  std::ostringstream out;
  WriteTable(Made(std::move(list)), form, out);
  return out.str();
}
std::string Csv(IRecordListPtr list, const std::string& nullText = "") {
  return Written(std::move(list), {OutputFormat::kCsv, nullText});
}
// The columns and rows of the JSON.
std::string Json(IRecordListPtr list) {
  const std::string start = R"({"type":"recordlist","columns":[)";
  const std::string json = Written(std::move(list), {OutputFormat::kJson});
  EXPECT_EQ(json.substr(0, start.size()), start);
  EXPECT_EQ(json.substr(json.size() - 2), "}\n");
  return json.substr(start.size(), json.size() - start.size() - 2);
}
std::string Table(IRecordListPtr list, std::size_t width = 0) {
  return Written(std::move(list), {OutputFormat::kTable, "", width});
}
Notes NotesOn(IRecordListPtr list) {
  return LossesOf(Made(std::move(list)));
}

IRecordListPtr Cities() {
  return BuildTable({{u"city", kColumnString}, {u"people", kColumnInt}, {u"founded", kColumnDate}},
                    {{Text(u"Rome"), Int(2748109), Date(-693593)},
                     {Text(u"Brasilia, DF"), Int(-1), Date(22027)},
                     {Text(u""), Variant(), Variant()}});
}

TEST(TableOutput, TableHasNamesAndNumbersToTheRight) {
  const std::string table =
      "city          people founded\n"
      "Rome         2748109 0001-01-01\n"
      "Brasilia, DF      -1 1960-04-21\n"
      "                     \n";
  EXPECT_EQ(Table(Cities()), table);
  EXPECT_EQ(Table(Cities(), 31), table);
  EXPECT_EQ(Written(Cities(), {OutputFormat::kText}), table);
  EXPECT_EQ(Table(Cities(), 24),
            "city   people founded\n"
            "Rome  2748109 0001-01-01\n"
            "Bras~      -1 1960-04-21\n"
            "              \n");
  EXPECT_EQ(Table(BuildTable({{u"a", kColumnString}}, {{Text(u"x\u001b[2Jy\nz")}})), "a\nx\\x1b[2Jy\\x0az\n");
}

TEST(TableOutput, PointsInTimeAreNotCut) {
  for (const std::int32_t type : {kColumnDateTime, kColumnTime, kColumnDate})
    EXPECT_EQ(Table(BuildTable({{u"a", kColumnString}, {u"when", type}},
                               {{Text(u"abcdefg"), Date(45356.42743055556)}}),
                    10),
              "a    when\nabc~ 2024-03-05T10:15:30\n");
  EXPECT_EQ(Table(BuildTable({{u"a", kColumnString}, {u"span", kColumnDuration}},
                             {{Text(u"abcdefg"), Variant::FromObject(CreateDuration(u"P1DT2H").get())}}),
                  8),
            "a    span\nabc~ P1DT2H\n");
}

TEST(TableOutput, CsvHasNamesAndTheTextForNoValue) {
  const std::string rows =
      "city,people,founded\r\n"
      "Rome,2748109,0001-01-01\r\n"
      "\"Brasilia, DF\",-1,1960-04-21\r\n";
  EXPECT_EQ(Csv(Cities()), rows + "\"\",,\r\n");
  EXPECT_EQ(Csv(Cities(), "NULL"), rows + ",NULL,NULL\r\n");
  const IRecordListPtr nulls =
      BuildTable({{u"NULL", kColumnString}}, {{Text(u"NULL")}, {Variant()}, {NullText()}});
  EXPECT_EQ(Csv(nulls, "NULL"), "NULL\r\n\"NULL\"\r\nNULL\r\nNULL\r\n");
  const IRecordListPtr single = BuildTable({{u"a", kColumnString}}, {{Text(u"")}, {Variant()}, {Text(u"x")}});
  EXPECT_EQ(Csv(single, "NULL"), "a\r\n\"\"\r\nNULL\r\nx\r\n");
  EXPECT_EQ(Csv(single), "a\r\n\"\"\r\n\r\nx\r\n");
  EXPECT_EQ(Csv(BuildTable({{u"a,b", kColumnInt}, {u"", kColumnInt}, {u"c\"", kColumnInt}}, {})),
            "\"a,b\",\"\",\"c\"\"\"\r\n");
}

TEST(TableOutput, CsvHasEveryTypeAsItsText) {
  const IRecordListPtr list =
      BuildTable({{u"b", kColumnBoolean},
                  {u"d", kColumnDouble},
                  {u"span", kColumnDuration},
                  {u"s", kColumnShort},
                  {u"y", kColumnByte},
                  {u"f", kColumnFloat},
                  {u"l", kColumnLong},
                  {u"dt", kColumnDateTime},
                  {u"t", kColumnTime},
                  {u"blob", kColumnBlob}},
                 {{Bool(true), R8(0.1), Variant::FromObject(CreateDuration(u"P1DT2H").get()), I2(-5), I1(7),
                   R4(0.1F), I8(5000000000), Date(45356), Date(0.25), Text(u"AAEC")},
                  {Bool(false), R8(std::numeric_limits<double>::infinity())}});
  EXPECT_EQ(Csv(list),
            "b,d,span,s,y,f,l,dt,t,blob\r\n"
            "true,0.1,P1DT2H,-5,7,0.1,5000000000,2024-03-05T00:00:00,06:00:00,AAEC\r\n"
            "false,INF,,,,,,,,\r\n");
}

TEST(TableOutput, JsonHasColumnsAndRows) {
  EXPECT_EQ(Json(Cities()),
            R"({"name":"city","displayName":"city","type":"string"},)"
            R"({"name":"people","displayName":"people","type":"int"},)"
            R"({"name":"founded","displayName":"founded","type":"date"}],)"
            R"("rows":[["Rome",2748109,"0001-01-01"],["Brasilia, DF",-1,"1960-04-21"],["",null,null]])");
  EXPECT_EQ(Json(BuildTable({{u"\u00E9\"b", kColumnString}}, {{Text(u"c\\d\n\u2603")}})),
            "{\"name\":\"\xC3\xA9\\\"b\",\"displayName\":\"\xC3\xA9\\\"b\",\"type\":\"string\"}],"
            "\"rows\":[[\"c\\\\d\\n\xE2\x98\x83\"]]");
  EXPECT_EQ(
      Json(BuildTable({{u"d", kColumnDouble}},
                      {{R8(std::nan(""))}, {R8(-std::numeric_limits<double>::infinity())}, {R8(1e300)}})),
      R"({"name":"d","displayName":"d","type":"double"}],"rows":[["NaN"],["-INF"],[1e+300]])");
}

TEST(TableOutput, RowsOrColumnsMayBeMissingOrRepeat) {
  const IRecordListPtr noRows = BuildTable({{u"a", kColumnInt}, {u"b", kColumnString}}, {});
  EXPECT_EQ(Table(noRows), "a b\n");
  EXPECT_EQ(Csv(noRows), "a,b\r\n");
  EXPECT_EQ(Json(noRows),
            R"({"name":"a","displayName":"a","type":"int"},{"name":"b","displayName":"b","type":"string"}],)"
            R"("rows":[])");
  const IRecordListPtr noColumns = BuildTable({}, {{}, {}});
  EXPECT_EQ(Table(noColumns), "");
  EXPECT_EQ(Csv(noColumns), "\r\n\r\n\r\n");
  EXPECT_EQ(Json(noColumns), "],\"rows\":[[],[]]");
  const IRecordListPtr twice = BuildTable({{u"a", kColumnInt}, {u"a", kColumnInt}}, {{Int(1), Int(2)}});
  EXPECT_EQ(Csv(twice), "a,a\r\n1,2\r\n");
  EXPECT_EQ(Table(twice), "a a\n1 2\n");
}

TEST(TableOutput, LossesAreReported) {
  const Variant wrapped = Variant::FromObject(CreateDuration(u"P40000D").get());
  EXPECT_EQ(NotesOn(BuildTable({{u"x", kColumnUnknown}, {u"link", kColumnUrl}, {u"n", kColumnInt}},
                               {{Variant(), Variant::FromObject(CreateUrl().get()), Int(1)}})),
            (Notes{"column 'x' has a type that the library does not read; its cells are empty",
                   "the links of the URL column 'link' do not arrive; let the script answer with strings"}));
  EXPECT_EQ(NotesOn(BuildTable({{u"span", kColumnDuration}}, {{wrapped}, {wrapped}})),
            (Notes{"a count of a duration in column 'span' does not fit 16 bits and arrived changed"}));
  EXPECT_EQ(NotesOn(BuildTable({{u"x", kColumnUnknown}, {u"link", kColumnUrl}}, {})), Notes{});
  EXPECT_EQ(NotesOn(Cities()), Notes{});
}

// Takes this many bytes and then no more.
class FullDisk : public std::stringbuf {
 public:
  explicit FullDisk(std::size_t room) : room_(room) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    const auto taken = std::min<std::size_t>(room_, static_cast<std::size_t>(count));
    room_ -= taken;
    return std::stringbuf::xsputn(text, static_cast<std::streamsize>(taken));
  }

 private:
  std::size_t room_;
};

TEST(TableOutput, FullDiskEndsTheRows) {
  for (const OutputFormat format : {OutputFormat::kCsv, OutputFormat::kJson, OutputFormat::kTable}) {
    FullDisk disk(4);
    std::ostream out(&disk);
    EXPECT_EQ(testing::RefusalOf([&] { WriteTable(Made(Cities()), {format}, out); }),
              "cannot write the answer to standard output");
    EXPECT_LE(disk.str().size(), 4U);
  }
}

}  // namespace
}  // namespace qv::cli

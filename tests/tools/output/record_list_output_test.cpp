// Tables as text, CSV and JSON, and a component or an output that fails in the middle.
#include "tools/output/record_list_output.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "fixtures/fake_record_list.h"
#include "fixtures/variant_makers.h"
#include "qvscriptwells/result_codes.h"
#include "tests/tools/refusal.h"
#include "tests/tools/table_builder.h"
#include "tools/output/record_table.h"

namespace qv::cli {
namespace {

using testing::BuildTable;
using Notes = std::vector<std::string>;

std::string Written(const IRecordListPtr& list, const ListForm& form) {
  std::ostringstream out;
  WriteRecordList(list, form, out);
  return out.str();
}
std::string Csv(const IRecordListPtr& list, const std::string& nullText = "") {
  return Written(list, {OutputFormat::kCsv, nullText});
}
// The columns and rows of the JSON.
std::string Json(const IRecordListPtr& list) {
  const std::string start = R"({"type":"recordlist","columns":[)";
  const std::string json = Written(list, {OutputFormat::kJson});
  EXPECT_EQ(json.substr(0, start.size()), start);
  EXPECT_EQ(json.substr(json.size() - 2), "}\n");
  return json.substr(start.size(), json.size() - start.size() - 2);
}
std::string Table(const IRecordListPtr& list, std::size_t width = 0) {
  return Written(list, {OutputFormat::kTable, "", width});
}
Notes NotesOn(const IRecordListPtr& list) {
  std::ostringstream out;
  return WriteRecordList(list, {OutputFormat::kCsv}, out);
}

IRecordListPtr Cities() {
  return BuildTable({{u"city", kColumnString, u"City"},
                     {u"people", kColumnInt, u"People"},
                     {u"founded", kColumnDate, u"Founded on"}},
                    {{Text(u"Rome"), Int(2748109), Date(-693593)},
                     {Text(u"Brasilia, DF"), Int(-1), Date(22027)},
                     {Text(u""), Variant(), Variant()}});
}

TEST(RecordListOutput, TableHasDisplayNamesAndNumbersToTheRight) {
  const std::string table =
      "City          People Founded on\n"
      "Rome         2748109 0001-01-01\n"
      "Brasilia, DF      -1 1960-04-21\n"
      "                     \n";
  EXPECT_EQ(Table(Cities()), table);
  EXPECT_EQ(Table(Cities(), 31), table);
  EXPECT_EQ(Written(Cities(), {OutputFormat::kText}), table);
  EXPECT_EQ(Table(Cities(), 24),
            "City   People Founded on\n"
            "Rome  2748109 0001-01-01\n"
            "Bras~      -1 1960-04-21\n"
            "              \n");
  EXPECT_EQ(Table(BuildTable({{u"a", kColumnString}}, {{Text(u"x\u001b[2Jy\nz")}})), "a\nx\\x1b[2Jy\\x0az\n");
}

TEST(RecordListOutput, PointsInTimeAreNotCut) {
  for (const std::int32_t type : {kColumnDateTime, kColumnTime, kColumnDate})
    EXPECT_EQ(Table(BuildTable({{u"a", kColumnString}, {u"when", type}},
                               {{Text(u"abcdefg"), Date(45356.42743055556)}}),
                    10),
              "a    when\nabc~ 2024-03-05T10:15:30\n");
  EXPECT_TRUE(IsTimeColumn(kColumnDuration));
  EXPECT_FALSE(IsTimeColumn(kColumnString));
}

TEST(RecordListOutput, CsvHasNamesAndTheTextForNoValue) {
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

TEST(RecordListOutput, CsvHasEveryTypeAsItsText) {
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

TEST(RecordListOutput, JsonHasColumnsAndRows) {
  EXPECT_EQ(Json(Cities()),
            R"({"name":"city","displayName":"City","type":"string"},)"
            R"({"name":"people","displayName":"People","type":"int"},)"
            R"({"name":"founded","displayName":"Founded on","type":"date"}],)"
            R"("rows":[["Rome",2748109,"0001-01-01"],["Brasilia, DF",-1,"1960-04-21"],["",null,null]])");
  EXPECT_EQ(Json(BuildTable({{u"a\"b", kColumnString, u"\u00E9"}}, {{Text(u"c\\d\n\u2603")}})),
            "{\"name\":\"a\\\"b\",\"displayName\":\"\xC3\xA9\",\"type\":\"string\"}],"
            "\"rows\":[[\"c\\\\d\\n\xE2\x98\x83\"]]");
  EXPECT_EQ(
      Json(BuildTable({{u"d", kColumnDouble}},
                      {{R8(std::nan(""))}, {R8(-std::numeric_limits<double>::infinity())}, {R8(1e300)}})),
      R"({"name":"d","displayName":"d","type":"double"}],"rows":[["NaN"],["-INF"],[1e+300]])");
}

TEST(RecordListOutput, RowsOrColumnsMayBeMissingOrRepeat) {
  const IRecordListPtr noRows = BuildTable({{u"a", kColumnInt}, {u"b", kColumnString, u"Bee"}}, {});
  EXPECT_EQ(Table(noRows), "a Bee\n");
  EXPECT_EQ(Csv(noRows), "a,b\r\n");
  EXPECT_EQ(
      Json(noRows),
      R"({"name":"a","displayName":"a","type":"int"},{"name":"b","displayName":"Bee","type":"string"}],)"
      R"("rows":[])");
  const IRecordListPtr noColumns = BuildTable({}, {{}, {}});
  EXPECT_EQ(Table(noColumns), "");
  EXPECT_EQ(Csv(noColumns), "\r\n\r\n\r\n");
  EXPECT_EQ(Json(noColumns), "],\"rows\":[[],[]]");
  const IRecordListPtr twice = BuildTable({{u"a", kColumnInt}, {u"a", kColumnInt}}, {{Int(1), Int(2)}});
  EXPECT_EQ(Csv(twice), "a,a\r\n1,2\r\n");
  EXPECT_EQ(Table(twice), "a a\n1 2\n");
}

TEST(RecordListOutput, LossesAreReported) {
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

// A component that fails at a step.
class RecordListFailure : public ::testing::Test {
 protected:
  static IRecordListPtr Two(FakeRecordList& fake) {
    return fake.MakeList({{{u"a", kColumnInt, u"a"}}, {{{Int(1)}}, {{Int(2)}}}});
  }
  // The output, a bar, the exit status and the message.
  std::string Failed(OutputFormat format) { return Failed(format, fake_); }
  static std::string Failed(OutputFormat format, FakeRecordList& fake) {
    std::ostringstream out;
    try {
      WriteRecordList(Two(fake), {format}, out);
      return out.str() + "|no failure";
    } catch (const Failure& failure) {
      return out.str() + "|" + std::to_string(static_cast<int>(failure.Status())) + " " + failure.Message();
    }
  }

  FakeRecordList fake_;
};

TEST_F(RecordListFailure, KeepsTheRowsBeforeAndReportsTheMessage) {
  EXPECT_EQ(Failed(OutputFormat::kCsv), "a\r\n1\r\n2\r\n|no failure");
  EXPECT_EQ(fake_.LiveObjects(), 0);
  struct Row {
    ListStep step;
    const char16_t* message;
    OutputFormat format;
    const char* result;
  };
  const Row rows[] = {
      {ListStep::kNext, u"the store is gone", OutputFormat::kCsv, "a\r\n1\r\n|7 the store is gone"},
      {ListStep::kGetValue, u"the store is gone", OutputFormat::kTable, "|7 the store is gone"},
      {ListStep::kHasMore, nullptr, OutputFormat::kCsv, "a\r\n1\r\n|7 failure 0x80004005"}};
  for (const Row& row : rows) {
    FakeRecordList fake;
    fake.Fail(row.step, E_FAIL, row.message, 2);
    EXPECT_EQ(Failed(row.format, fake), row.result);
    EXPECT_EQ(fake.LiveObjects(), 0);
  }
}

TEST_F(RecordListFailure, OfEveryStepIsReported) {
  for (const ListStep step :
       {ListStep::kGetHeaders, ListStep::kGetCount, ListStep::kGetHeader, ListStep::kGetName,
        ListStep::kGetDisplayName, ListStep::kGetType, ListStep::kOpenCursor}) {
    FakeRecordList fake;
    fake.Fail(step, E_FAIL, u"no");
    std::ostringstream out;
    const IRecordListPtr list = fake.MakeList({{{u"a", kColumnInt}}, {}});
    EXPECT_THROW(WriteRecordList(list, {OutputFormat::kCsv}, out), Failure) << static_cast<int>(step);
    EXPECT_EQ(out.str(), "");
  }
  for (const ListStep step :
       {ListStep::kGetHeaders, ListStep::kGetHeader, ListStep::kOpenCursor, ListStep::kNext}) {
    FakeRecordList fake;
    fake.GiveNull(step);
    std::ostringstream out;
    const IRecordListPtr list = fake.MakeList({{{u"a", kColumnInt}}, {{{Variant()}}}});
    EXPECT_THROW(WriteRecordList(list, {OutputFormat::kCsv}, out), Failure) << static_cast<int>(step);
  }
}

TEST_F(RecordListFailure, WrongCountOfColumns) {
  fake_.SayCount(2);
  EXPECT_EQ(Failed(OutputFormat::kCsv).substr(0, 2), "|7");
  fake_.SayCount(-1);
  EXPECT_EQ(Failed(OutputFormat::kCsv), "\r\n\r\n\r\n|no failure");
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

TEST_F(RecordListFailure, FullDiskEndsTheWalk) {
  FullDisk disk(4);
  std::ostream out(&disk);
  EXPECT_EQ(testing::RefusalOf([&] { WriteRecordList(Two(fake_), {OutputFormat::kCsv}, out); }),
            "cannot write the answer to standard output");
  EXPECT_EQ(fake_.CallsWith("Next").size(), 1U);
}

}  // namespace
}  // namespace qv::cli

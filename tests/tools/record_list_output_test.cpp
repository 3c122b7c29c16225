#include "tools/record_list_output.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "fixtures/fake_record_list.h"
#include "qvscriptwells/result_codes.h"
#include "tests/tools/table_builder.h"
#include "tools/failure.h"
#include "tools/record_table.h"

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
std::string Json(const IRecordListPtr& list) {
  return Written(list, {OutputFormat::kJson});
}
std::string Table(const IRecordListPtr& list, std::size_t width = 0) {
  return Written(list, {OutputFormat::kTable, "", width});
}
Notes NotesOn(const IRecordListPtr& list) {
  std::ostringstream out;
  return WriteRecordList(list, {OutputFormat::kCsv}, out);
}

Variant Text(const char16_t* text) {
  return Variant::FromString(text);
}

IRecordListPtr Cities() {
  return BuildTable({{u"city", kColumnString, u"City"},
                     {u"people", kColumnInt, u"People"},
                     {u"founded", kColumnDate, u"Founded on"}},
                    {{Text(u"Rome"), Variant::FromInt(2748109), Variant::FromDate(-693593)},
                     {Text(u"Brasilia, DF"), Variant::FromInt(-1), Variant::FromDate(22027)},
                     {Text(u""), Variant(), Variant()}});
}

TEST(RecordListOutput, TableHasDisplayNamesAndNumbersToTheRight) {
  EXPECT_EQ(Table(Cities()),
            "City          People Founded on\n"
            "Rome         2748109 0001-01-01\n"
            "Brasilia, DF      -1 1960-04-21\n"
            "                     \n");
}

TEST(RecordListOutput, PointsInTimeAreNotCut) {
  const double when = 45356.42743055556;
  for (const std::int32_t type : {kColumnDateTime, kColumnTime, kColumnDate})
    EXPECT_EQ(Table(BuildTable({{u"a", kColumnString}, {u"when", type}},
                               {{Text(u"abcdefg"), Variant::FromDate(when)}}),
                    10),
              "a    when\nabc~ 2024-03-05T10:15:30\n");
  EXPECT_TRUE(IsTimeColumn(kColumnDuration));
  EXPECT_FALSE(IsTimeColumn(kColumnString));
}

TEST(RecordListOutput, TextIsTheTable) {
  EXPECT_EQ(Written(Cities(), {OutputFormat::kText}), Table(Cities()));
}

TEST(RecordListOutput, TableIsCutToTheWidthAlone) {
  EXPECT_EQ(Table(Cities(), 24),
            "City   People Founded on\n"
            "Rome  2748109 0001-01-01\n"
            "Bras~      -1 1960-04-21\n"
            "              \n");
  EXPECT_EQ(Table(Cities(), 31), Table(Cities()));
}

TEST(RecordListOutput, ControlCharactersInATableAreEscaped) {
  EXPECT_EQ(Table(BuildTable({{u"a", kColumnString}}, {{Text(u"x\u001b[2Jy\nz")}})), "a\nx\\x1b[2Jy\\x0az\n");
}

TEST(RecordListOutput, CsvHasNamesAndLineEndsOfItsOwn) {
  EXPECT_EQ(Csv(Cities()),
            "city,people,founded\r\n"
            "Rome,2748109,0001-01-01\r\n"
            "\"Brasilia, DF\",-1,1960-04-21\r\n"
            "\"\",,\r\n");
}

TEST(RecordListOutput, NullTextStandsForNoValueOnly) {
  EXPECT_EQ(Csv(Cities(), "NULL"),
            "city,people,founded\r\n"
            "Rome,2748109,0001-01-01\r\n"
            "\"Brasilia, DF\",-1,1960-04-21\r\n"
            ",NULL,NULL\r\n");
  EXPECT_EQ(
      Csv(BuildTable({{u"NULL", kColumnString}}, {{Text(u"NULL")}, {Variant()}, {Text(nullptr)}}), "NULL"),
      "NULL\r\n\"NULL\"\r\nNULL\r\nNULL\r\n");
}

TEST(RecordListOutput, EmptyStringOfTheOnlyColumnIsNoEmptyLine) {
  const IRecordListPtr list = BuildTable({{u"a", kColumnString}}, {{Text(u"")}, {Variant()}, {Text(u"x")}});
  EXPECT_EQ(Csv(list, "NULL"), "a\r\n\"\"\r\nNULL\r\nx\r\n");
  EXPECT_EQ(Csv(list), "a\r\n\"\"\r\n\r\nx\r\n");
}

TEST(RecordListOutput, CsvQuotesHeadsToo) {
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
                 {{Variant::FromBool(true), Variant::FromDouble(0.1),
                   Variant::FromObject(CreateDuration(u"P1DT2H").get()), Variant::FromShort(-5),
                   Variant::FromByte(7), Variant::FromFloat(0.1F), Variant::FromLong(5000000000),
                   Variant::FromDate(45356), Variant::FromDate(0.25), Text(u"AAEC")},
                  {Variant::FromBool(false), Variant::FromDouble(std::numeric_limits<double>::infinity())}});
  EXPECT_EQ(Csv(list),
            "b,d,span,s,y,f,l,dt,t,blob\r\n"
            "true,0.1,P1DT2H,-5,7,0.1,5000000000,2024-03-05T00:00:00,06:00:00,AAEC\r\n"
            "false,INF,,,,,,,,\r\n");
}

TEST(RecordListOutput, JsonHasColumnsAndRows) {
  EXPECT_EQ(Json(Cities()),
            "{\"type\":\"recordlist\",\"columns\":["
            "{\"name\":\"city\",\"displayName\":\"City\",\"type\":\"string\"},"
            "{\"name\":\"people\",\"displayName\":\"People\",\"type\":\"int\"},"
            "{\"name\":\"founded\",\"displayName\":\"Founded on\",\"type\":\"date\"}],"
            "\"rows\":[[\"Rome\",2748109,\"0001-01-01\"],[\"Brasilia, DF\",-1,\"1960-04-21\"],"
            "[\"\",null,null]]}\n");
}

TEST(RecordListOutput, JsonEscapesNamesAndTexts) {
  EXPECT_EQ(Json(BuildTable({{u"a\"b", kColumnString, u"\u00E9"}}, {{Text(u"c\\d\n\u2603")}})),
            "{\"type\":\"recordlist\",\"columns\":[{\"name\":\"a\\\"b\",\"displayName\":\"\xC3\xA9\","
            "\"type\":\"string\"}],\"rows\":[[\"c\\\\d\\n\xE2\x98\x83\"]]}\n");
}

TEST(RecordListOutput, NumbersBeyondJsonAreStrings) {
  EXPECT_EQ(
      Json(BuildTable({{u"d", kColumnDouble}},
                      {{Variant::FromDouble(std::nan(""))},
                       {Variant::FromDouble(-std::numeric_limits<double>::infinity())},
                       {Variant::FromDouble(1e300)}})),
      "{\"type\":\"recordlist\",\"columns\":[{\"name\":\"d\",\"displayName\":\"d\",\"type\":\"double\"}],"
      "\"rows\":[[\"NaN\"],[\"-INF\"],[1e+300]]}\n");
}

TEST(RecordListOutput, TableWithoutRowsHasItsHeads) {
  const IRecordListPtr list = BuildTable({{u"a", kColumnInt}, {u"b", kColumnString, u"Bee"}}, {});
  EXPECT_EQ(Table(list), "a Bee\n");
  EXPECT_EQ(Csv(list), "a,b\r\n");
  EXPECT_EQ(Json(list),
            "{\"type\":\"recordlist\",\"columns\":[{\"name\":\"a\",\"displayName\":\"a\",\"type\":\"int\"},"
            "{\"name\":\"b\",\"displayName\":\"Bee\",\"type\":\"string\"}],\"rows\":[]}\n");
}

TEST(RecordListOutput, TableWithoutColumnsKeepsItsRows) {
  const IRecordListPtr list = BuildTable({}, {{}, {}});
  EXPECT_EQ(Table(list), "");
  EXPECT_EQ(Csv(list), "\r\n\r\n\r\n");
  EXPECT_EQ(Json(list), "{\"type\":\"recordlist\",\"columns\":[],\"rows\":[[],[]]}\n");
}

TEST(RecordListOutput, NamesMayRepeat) {
  const IRecordListPtr list =
      BuildTable({{u"a", kColumnInt}, {u"a", kColumnInt}}, {{Variant::FromInt(1), Variant::FromInt(2)}});
  EXPECT_EQ(Csv(list), "a,a\r\n1,2\r\n");
  EXPECT_EQ(Table(list), "a a\n1 2\n");
}

TEST(RecordListOutput, WhatDidNotArriveIsTold) {
  EXPECT_EQ(NotesOn(BuildTable({{u"x", kColumnUnknown}, {u"link", kColumnUrl}, {u"n", kColumnInt}},
                               {{Variant(), Variant::FromObject(CreateUrl().get()), Variant::FromInt(1)}})),
            (Notes{"column 'x' has a type that the library does not read; its cells are empty",
                   "the links of the URL column 'link' do not arrive; let the script answer with strings"}));
  const Variant wrapped = Variant::FromObject(CreateDuration(u"P40000D").get());
  EXPECT_EQ(NotesOn(BuildTable({{u"span", kColumnDuration}}, {{wrapped}, {wrapped}})),
            (Notes{"a count of a duration in column 'span' does not fit 16 bits and arrived changed"}));
  EXPECT_EQ(NotesOn(BuildTable({{u"x", kColumnUnknown}, {u"link", kColumnUrl}}, {})), Notes{});
  EXPECT_EQ(NotesOn(Cities()), Notes{});
}

// A component that fails where it is told to.
class RecordListFailure : public ::testing::Test {
 protected:
  IRecordListPtr Two() {
    return fake_.MakeList({{{u"a", kColumnInt, u"a"}}, {{{Variant::FromInt(1)}}, {{Variant::FromInt(2)}}}});
  }
  // What stands on the output, a bar, the exit status and the words.
  std::string Failed(OutputFormat format) {
    std::ostringstream out;
    try {
      WriteRecordList(Two(), {format}, out);
      return out.str() + "|no failure";
    } catch (const Failure& failure) {
      return out.str() + "|" + std::to_string(static_cast<int>(failure.Status())) + " " + failure.Message();
    }
  }

  FakeRecordList fake_;
};

TEST_F(RecordListFailure, WalksThroughTheComponent) {
  EXPECT_EQ(Failed(OutputFormat::kCsv), "a\r\n1\r\n2\r\n|no failure");
  EXPECT_EQ(fake_.LiveObjects(), 0);
}

TEST_F(RecordListFailure, RowsBeforeItStayAndTheWordsAreTold) {
  fake_.Fail(ListStep::kNext, E_FAIL, u"the store is gone", 2);
  EXPECT_EQ(Failed(OutputFormat::kCsv), "a\r\n1\r\n|7 the store is gone");
  EXPECT_EQ(fake_.LiveObjects(), 0);
}

TEST_F(RecordListFailure, TableForPeopleIsNotShownInPart) {
  fake_.Fail(ListStep::kGetValue, E_FAIL, u"the store is gone", 2);
  EXPECT_EQ(Failed(OutputFormat::kTable), "|7 the store is gone");
}

TEST_F(RecordListFailure, FailureWithoutWordsHasItsCode) {
  fake_.Fail(ListStep::kHasMore, E_FAIL, WideString(), 1);
  EXPECT_EQ(Failed(OutputFormat::kCsv), "a\r\n|7 failure 0x80004005");
}

TEST_F(RecordListFailure, EveryStepIsLookedAt) {
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
}

TEST_F(RecordListFailure, ObjectsThatAreMissingAreFailures) {
  for (const ListStep step :
       {ListStep::kGetHeaders, ListStep::kGetHeader, ListStep::kOpenCursor, ListStep::kNext}) {
    FakeRecordList fake;
    fake.GiveNull(step);
    std::ostringstream out;
    const IRecordListPtr list = fake.MakeList({{{u"a", kColumnInt}}, {{{Variant()}}}});
    EXPECT_THROW(WriteRecordList(list, {OutputFormat::kCsv}, out), Failure) << static_cast<int>(step);
  }
}

TEST_F(RecordListFailure, CountThatIsTooHighIsAFailure) {
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

TEST_F(RecordListFailure, OutputThatTakesNoMoreEndsTheWalk) {
  FullDisk disk(4);
  std::ostream out(&disk);
  try {
    WriteRecordList(Two(), {OutputFormat::kCsv}, out);
    FAIL() << "accepted";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kLocal);
    EXPECT_EQ(failure.Message(), "cannot write the answer to standard output");
  }
  EXPECT_EQ(fake_.CallsWith("Next").size(), 1u);
}

}  // namespace
}  // namespace qv::cli

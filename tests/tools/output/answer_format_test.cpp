// Single values as text, JSON, CSV and as a table.
#include "tools/output/answer_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace qv::cli {
namespace {

using scriptwells::Date;
using scriptwells::DateTime;
using scriptwells::Duration;
using scriptwells::Link;
using scriptwells::Time;
using scriptwells::Value;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

constexpr Date kDay{2024, 3, 5};
// Of a server's zone of a whole day.
constexpr Date kFarDay{10000, 1, 1};

struct Row {
  Value value;
  std::string text;
};

// The texts are without their line end.
void ExpectTexts(OutputFormat format, const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(FormatAnswer(format, row.value), row.text + "\n");
}

TEST(AnswerFormat, JsonOfPlainValues) {
  ExpectTexts(OutputFormat::kJson,
              {{42, R"({"type":"int","value":42,"tag":22})"},
               {scriptwells::Byte(-128), R"({"type":"byte","value":-128,"tag":16})"},
               {scriptwells::Short(32767), R"({"type":"short","value":32767,"tag":2})"},
               {true, R"({"type":"boolean","value":true,"tag":11})"},
               {0.30000000000000004, R"({"type":"double","value":0.30000000000000004,"tag":5})"},
               {0.1F, R"({"type":"float","value":0.1,"tag":4})"},
               {9007199254740991LL, R"({"type":"long","value":9007199254740991,"tag":20})"}});
  ExpectTexts(OutputFormat::kJson,
              {{9007199254740992LL, R"({"type":"long","value":"9007199254740992","tag":20})"},
               {-9007199254740992LL, R"({"type":"long","value":"-9007199254740992","tag":20})"},
               {std::nan(""), R"({"type":"double","value":"NaN","tag":5})"},
               {-kInfinity, R"({"type":"double","value":"-INF","tag":5})"},
               {static_cast<float>(kInfinity), R"({"type":"float","value":"INF","tag":4})"},
               {"a\"b\\\n\u00E9\U0001F600",
                "{\"type\":\"string\",\"value\":\"a\\\"b\\\\\\n\xC3\xA9\xF0\x9F\x98\x80\",\"tag\":8}"},
               {"", R"({"type":"string","value":"","tag":8})"},
               {Value(), R"({"type":"empty","value":null,"tag":0})"}});
}

TEST(AnswerFormat, JsonOfPointsInTimeHasTheNumber) {
  const Time time{10, 15, 30, 0};
  ExpectTexts(OutputFormat::kJson,
              {{kDay, R"({"type":"date","value":"2024-03-05","tag":7,"serial":45356.0})"},
               {DateTime{kDay, time},
                R"({"type":"datetime","value":"2024-03-05T10:15:30","tag":7,"serial":45356.42743055556})"},
               {Time{6, 0, 0, 0}, R"({"type":"time","value":"06:00:00","tag":7,"serial":0.25})"},
               {Date{1, 1, 1}, R"({"type":"date","value":"0001-01-01","tag":7,"serial":-693593.0})"},
               {DateTime{Date{1899, 12, 29}, Time{18, 0, 0, 0}},
                R"({"type":"datetime","value":"1899-12-29T18:00:00","tag":7,"serial":-0.25})"},
               {DateTime{kFarDay, Time{12, 0, 0, 0}},
                R"({"type":"datetime","value":"2958466.5","tag":7,"serial":2958466.5})"}});
}

// The text has 6 significant digits of the seconds, the number all of them.
TEST(AnswerFormat, JsonOfDurationsAndLinksHasTheirFields) {
  ExpectTexts(
      OutputFormat::kJson,
      {{Duration{false, 0, 0, 1, 2, 0, 0},
        R"({"type":"duration","value":"P1DT2H","tag":13,"negative":false,"years":0,"months":0,)"
        R"("days":1,"hours":2,"minutes":0,"seconds":0})"},
       {Duration{true, 1, 2, 3, 4, 5, 12345.678},
        R"({"type":"duration","value":"-P1Y2M3DT4H5M12345.7S","tag":13,"negative":true,"years":1,)"
        R"("months":2,"days":3,"hours":4,"minutes":5,"seconds":12345.678})"},
       {Link{"http://h/a", "here"}, R"({"type":"url","value":"http://h/a","tag":13,"caption":"here"})"}});
  // A server's text must not make the JSON invalid.
  const std::pair<double, const char*> rows[] = {{kInfinity, R"(,"seconds":"INF"})"},
                                                 {std::nan(""), R"(,"seconds":"NaN"})"}};
  for (const auto& [seconds, end] : rows)
    EXPECT_NE(FormatAnswer(OutputFormat::kJson, Duration{false, 0, 0, 0, 0, 0, seconds}).find(end),
              std::string::npos);
  EXPECT_EQ(TypeName(scriptwells::Table()), "recordlist");
}

TEST(AnswerFormat, TextIsTheBareValue) {
  ExpectTexts(OutputFormat::kText, {{-7, "-7"},
                                    {scriptwells::Byte(65), "65"},
                                    {9223372036854775807LL, "9223372036854775807"},
                                    {0.1, "0.1"},
                                    {0.1F, "0.1"},
                                    {3.0, "3"},
                                    {kInfinity, "INF"},
                                    {false, "false"},
                                    {"two\nlines", "two\nlines"},
                                    {Value(), ""},
                                    {kDay, "2024-03-05"},
                                    {DateTime{kDay, Time{12, 0, 0, 0}}, "2024-03-05T12:00:00"},
                                    {Time{6, 0, 0, 0}, "06:00:00"},
                                    {kFarDay, "2958466"},
                                    {Date{0, 12, 31}, "-693594"},
                                    {Duration{false, 0, 0, 1, 2, 0, 0}, "P1DT2H"},
                                    {Link{}, ""}});
}

TEST(AnswerFormat, TableAndCsv) {
  const Value point = DateTime{kDay, Time{12, 0, 0, 0}};
  ExpectTexts(OutputFormat::kTable,
              {{42, "NAME   TYPE VALUE\nanswer int  42"},
               {point, "NAME   TYPE     VALUE\nanswer datetime 2024-03-05T12:00:00"},
               {Duration{false, 0, 0, 1, 2, 0, 0}, "NAME   TYPE     VALUE\nanswer duration P1DT2H"}});
  ExpectTexts(OutputFormat::kCsv, {{42, "value\r\n42\r"},
                                   {"a,\"b\"", "value\r\n\"a,\"\"b\"\"\"\r"},
                                   {point, "value\r\n2024-03-05T12:00:00\r"},
                                   {"", "value\r\n\"\"\r"},
                                   {Value(), "value\r\n\r"}});
  const Row rows[] = {
      {Value(), "value\r\nNULL\r\n"}, {"", "value\r\n\"\"\r\n"}, {"NULL", "value\r\n\"NULL\"\r\n"}};
  for (const Row& row : rows) EXPECT_EQ(FormatAnswer(OutputFormat::kCsv, row.value, "NULL"), row.text);
}

TEST(AnswerFormat, NegativeCountsHaveWrapped) {
  EXPECT_TRUE(HasWrappedCount(Duration{false, 0, 0, -25536, 0, 0, 0}));
  EXPECT_TRUE(HasWrappedCount(Duration{true, 0, 0, 0, 0, -1, 0}));
  EXPECT_FALSE(HasWrappedCount(Duration{true, 0, 0, 32767, 0, 0, 0}));
  EXPECT_FALSE(HasWrappedCount(-1));
}

}  // namespace
}  // namespace qv::cli

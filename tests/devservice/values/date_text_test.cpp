// Dates and times: which texts are read as which moment, and how moments are written.
#include "devservice/values/date_text.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>

namespace qv::devservice {
namespace {

constexpr std::int64_t kRefused = std::numeric_limits<std::int64_t>::min();

using Parser = bool (*)(std::string_view, std::int64_t&);

// The milliseconds that the text means, kRefused for none.
std::int64_t Parsed(Parser parser, std::string_view text) {
  std::int64_t milliseconds = 0;
  return parser(text, milliseconds) ? milliseconds : kRefused;
}

struct Row {
  const char* text;
  std::int64_t milliseconds;
};

void ExpectParsed(Parser parser, std::initializer_list<Row> rows) {
  for (const Row& row : rows) EXPECT_EQ(Parsed(parser, row.text), row.milliseconds) << row.text;
}

void ExpectRefused(Parser parser, std::initializer_list<const char*> texts) {
  for (const char* text : texts) EXPECT_EQ(Parsed(parser, text), kRefused) << text;
}

TEST(DateText, DatesAreDaysOfTheCalendar) {
  ExpectParsed(ParseDate, {{"1970-01-01", 0},
                           {"1970-01-02", 86400000},
                           {"1969-12-30", -172800000},
                           {"2024-03-05", 1709596800000},
                           {"2000-02-29", 951782400000},
                           {"2024-12-31", 1735603200000},
                           {"1900-02-28", -2203977600000},
                           {"0001-01-01", -62135596800000},
                           {"9999-12-31", 253402214400000},
                           {" 2024-03-05\n", 1709596800000}});
  // A day has no time that a zone could shift.
  for (const char* text : {"2024-03-05Z", "2024-03-05+02:00", "2024-03-05-14:00"})
    EXPECT_EQ(Parsed(ParseDate, text), 1709596800000) << text;
  // Days that do not exist, other forms, and zones that do not exist.
  ExpectRefused(ParseDate, {"2024-00-05", "2024-13-05", "2024-03-00", "2024-03-32", "2024-04-31",
                            "2023-02-29", "1900-02-29", "0000-01-01"});
  ExpectRefused(ParseDate, {"", " ", "x", "2024", "2024-03", "2024-3-5", "24-03-05", "20240305", "--03-05"});
  ExpectRefused(ParseDate, {"02024-03-05", "-2024-03-05", "+2024-03-05", "2024/03/05", "2024 -03-05",
                            "2024-03-0\xD9\xA5", "2024-03-05 x"});
  ExpectRefused(ParseDate, {"2024-03-05z", "2024-03-05+2:00", "2024-03-05+14:01", "2024-03-05+02:60",
                            "2024-03-05Z+02:00", "2024-03-05T10:15:30Z"});
}

TEST(DateText, TimesAreOnTheFirstDay) {
  ExpectParsed(ParseTime, {{"00:00:00", 0},
                           {"10:15:30", 36930000},
                           {"10:15:30Z", 36930000},
                           {"23:59:59.999Z", 86399999},
                           {"24:00:00", 0},
                           {"24:00:00.0Z", 0},
                           {"\t10:15:30Z ", 36930000},
                           {"10:15:30+02:00", 29730000},
                           {"10:15:30-02:00", 44130000},
                           {"01:00:00+02:00", 82800000},
                           {"23:00:00-02:00", 3600000},
                           {"00:00:00+14:00", 36000000}});
  // Digits after the point count milliseconds.
  ExpectParsed(ParseTime, {{"00:00:00.0Z", 0},
                           {"00:00:00.7Z", 7},
                           {"00:00:00.07Z", 7},
                           {"00:00:00.007Z", 7},
                           {"00:00:00.70Z", 70},
                           {"00:00:00.12", 12},
                           {"00:00:00.500Z", 500},
                           {"00:00:00.999", 999},
                           {"00:00:00.1234", 123},
                           {"00:00:00.0009Z", 0},
                           {"00:00:00.123456789Z", 123}});
  ExpectRefused(ParseTime, {"", "ten", "10", "10:15", "10:15:3", "1:15:30", "010:15:30", "24:00:01",
                            "24:00:00.1", "25:00:00", "10:60:00", "10:15:60", "-10:15:30", "10.15.30"});
  ExpectRefused(ParseTime,
                {"10:15:30.", "10:15:30.Z", "10:15:30,5", "10:15:30.5.5", "10:15:30.-5", "10:15:30.5e1",
                 "10:15:30 Z", "10:15:30z", "10:15:30ZZ", "10:15:30+", "T10:15:30"});
  ExpectRefused(ParseTime, {"10:15:30+2:00", "10:15:30+0200", "10:15:30+15:00", "10:15:30+02:00Z",
                            "2024-03-05T10:15:30Z"});
}

TEST(DateText, DateTimesAreMomentsInUtc) {
  ExpectParsed(ParseDateTime, {{"1970-01-01T00:00:00Z", 0},
                               {"2024-03-05T10:15:30.0Z", 1709633730000},
                               {"2024-03-05T10:15:30.7Z", 1709633730007},
                               {"2024-03-05T10:15:30.500Z", 1709633730500},
                               {"2024-03-05T10:15:30", 1709633730000},
                               {"2024-03-05T10:15:30+02:00", 1709626530000},
                               {"2024-03-05T00:30:00+01:00", 1709595000000},
                               {"2024-02-29T23:30:00-01:00", 1709253000000},
                               {"2024-03-05T24:00:00Z", 1709683200000},
                               {"1969-12-31T23:59:59.999Z", -1},
                               {"0001-01-01T00:00:00Z", -62135596800000},
                               {"9999-12-31T23:59:59.999Z", 253402300799999},
                               {"1582-10-10T12:00:00Z", -12219681600000}});
  ExpectRefused(ParseDateTime, {"", "T", "2024-03-05", "10:15:30Z", "2024-03-05T", "T10:15:30Z"});
  ExpectRefused(ParseDateTime, {"2024-03-05 10:15:30Z", "2024-03-05t10:15:30Z", "2024-03T10:15:30Z",
                                "2024-03-05T10:15Z", "2024-02-30T10:15:30Z", "2024-03-05T10:15:61Z",
                                "2024-03-05T10:15:30Zx", "2024-03-05Z10:15:30", "2024-03-05TT10:15:30Z",
                                "2024-03-05T-6:00:00.0Z", "2024-03-05T00:-1:00.0Z"});
  ExpectRefused(ParseDateTime,
                {"2024-03-05T10:15:30+24:00", "2024-03-05T10:15:30 +02:00", "2024-03-05+02:00T10:15:30",
                 "0001-01-01T00:00:00+00:01", "9999-12-31T23:59:59-00:01", "9999-12-31T24:00:00Z",
                 "10000-01-01T00:00:00Z", "0000-12-31T00:00:00Z", "-2024-03-05T10:15:30Z"});
}

TEST(DateText, AnswersHaveTheFormsOfXmlSchema) {
  EXPECT_EQ(FormatDate(1709633730007), "2024-03-05");
  EXPECT_EQ(FormatTime(1709633730007), "10:15:30.007Z");
  EXPECT_EQ(FormatDateTime(1709633730007), "2024-03-05T10:15:30.007Z");
  EXPECT_EQ(FormatDateTime(0), "1970-01-01T00:00:00.000Z");
  EXPECT_EQ(FormatDateTime(-1), "1969-12-31T23:59:59.999Z");
  EXPECT_EQ(FormatDateTime(-62135596800000), "0001-01-01T00:00:00.000Z");
  EXPECT_EQ(FormatDateTime(253402300799999), "9999-12-31T23:59:59.999Z");
  EXPECT_EQ(FormatDate(951782400000), "2000-02-29");
  EXPECT_EQ(FormatDate(-2203891200000), "1900-03-01");
  EXPECT_EQ(FormatDate(1735603200000), "2024-12-31");
  std::int64_t day = -62135596800000;
  for (; day < 253402300800000; day += 86400000)
    ASSERT_EQ(Parsed(ParseDate, FormatDate(day)), day) << FormatDate(day);
  EXPECT_EQ(day, 253402300800000);
}

TEST(DateText, RangeIsTheYearsOneTo9999) {
  EXPECT_TRUE(IsDateInRange(-62135596800000.0));
  EXPECT_FALSE(IsDateInRange(-62135596800001.0));
  EXPECT_TRUE(IsDateInRange(253402300799999.0));
  EXPECT_FALSE(IsDateInRange(253402300800000.0));
  EXPECT_FALSE(IsDateInRange(std::numeric_limits<double>::quiet_NaN()));
}

}  // namespace
}  // namespace qv::devservice

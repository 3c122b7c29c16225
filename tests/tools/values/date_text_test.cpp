// Dates and times on the command line, and how values of the library are shown.
#include "tools/values/date_text.h"

#include <cmath>
#include <limits>

#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

using testing::ExpectRefusals;

using Parser = double (*)(const std::string&);

constexpr double kMillisecond = 1 / 86400000.0;
constexpr char kNoDay[] = "names no day of the calendar of the years 1 to 9999";
constexpr char kNoTime[] = "names no time of day (00:00 to 23:59:59.999)";

struct SerialRow {
  const char* text;
  double serial;
};

void ExpectSerials(Parser parse, const std::vector<SerialRow>& rows) {
  for (const SerialRow& row : rows) EXPECT_EQ(parse(row.text), row.serial) << row.text;
}

TEST(ParseDate, TakesDaysOfTheCalendar) {
  ExpectSerials(ParseDate, {{"1899-12-30", 0},
                            {"1899-12-31", 1},
                            {"1899-12-29", -1},
                            {"1900-01-01", 2},
                            {"1900-02-28", 60},
                            {"1900-03-01", 61},
                            {"1970-01-01", 25569},
                            {"2000-02-29", 36585},
                            {"2024-02-29", 45351},
                            {"2024-03-05", 45356},
                            {"2024-12-31", 45657},
                            {"9999-12-31", 2958465},
                            {"0001-01-01", -693593},
                            {"1600-02-29", -109512}});
}

TEST(ParseDate, RejectsOtherTexts) {
  ExpectRefusals(
      ParseDate,
      "|2024|2024-03|2024-3-5|24-03-05|2024-03-5|2024/03/05|20240305|05.03.2024|2024-03-05 | 2024-03-05|"
      "2024-03-05Z|2024-03-05T10:15|+2024-03-05|-2024-03-05|02024-03-05|2024-03-05x|2024-0x-05|"
      "2024--3-05|2024-03-\xD9\xA1|today|2024-W10-2|2024-065|--03-05|2024-03-05-|2024-03-+5|NaN",
      "is not a date (YYYY-MM-DD)");
  ExpectRefusals(ParseDate,
                 "2023-02-29|1900-02-29|2100-02-29|2024-02-30|2024-04-31|2024-00-01|2024-13-01|2024-01-00|"
                 "2024-01-32|0000-01-01|2024-99-99",
                 kNoDay);
}

TEST(ParseTime, ReturnsTheFractionOfADay) {
  ExpectSerials(ParseTime, {{"00:00", 0},
                            {"12:00", 0.5},
                            {"06:00", 0.25},
                            {"06:00:00", 0.25},
                            {"18:00Z", 0.75},
                            {"10:15:30", 36930000 / 86400000.0},
                            {"10:15:30Z", 36930000 / 86400000.0},
                            {"10:15:30.5", 36930500 / 86400000.0},
                            {"10:15:30.05", 36930050 / 86400000.0},
                            {"10:15:30.007", 36930007 / 86400000.0},
                            {"10:15:30.7Z", 36930700 / 86400000.0},
                            {"10:15:30.000", 36930000 / 86400000.0},
                            {"00:00:00.001", kMillisecond},
                            {"23:59", 86340000 / 86400000.0},
                            {"23:59:59", 86399000 / 86400000.0},
                            {"23:59:59.999", 86399999 / 86400000.0}});
}

TEST(ParseTime, RejectsOtherTexts) {
  ExpectRefusals(
      ParseTime,
      "|10|10:|10:5|1:15|10:15:|10:15:3|10:15:30.|10:15:30.1234|10:15.5|10:15:30,5|10:15:30z|"
      "10:15:30ZZ|Z|10:15 | 10:15|-10:15|10:15:30 Z|10.15|1015|10:15:NaN|10:15:1e1|T10:15|10:15:30.Z|"
      "ten|10:15:30:00|10:-5:00",
      "is not a time (hh:mm or hh:mm:ss, with up to 3 digits after a '.')");
  ExpectRefusals(ParseTime, "24:00|24:00:00|10:60|10:15:60|99:99|23:59:60Z", kNoTime);
  const std::string reason = "has an offset, but values travel without zone; write the time alone";
  ExpectRefusals(ParseTime, "10:15+02:00|10:15-05:00|10:15:30+00:00|10:15:30.5-01:30|10:15+2", reason);
  ExpectRefusals(ParseDateTime, "2024-03-05T10:15:30+02:00", reason);
}

TEST(ParseDateTime, ReturnsDayAndFraction) {
  ExpectSerials(ParseDateTime, {{"2024-03-05T00:00", 45356},
                                {"2024-03-05T12:00", 45356.5},
                                {"2024-03-05T12:00:00Z", 45356.5},
                                {"2024-03-05T10:15:30", 45356 + 36930000 / 86400000.0},
                                {"2024-03-05T10:15:30.007", 45356 + 36930007 / 86400000.0},
                                {"2024-03-05T23:59:59", 45356 + 86399000 / 86400000.0},
                                {"1899-12-30T06:00", 0.25},
                                {"1899-12-31T06:00", 1.25},
                                {"1899-12-28T18:00", -1.25},
                                {"1850-01-01T00:00", -18260},
                                {"1850-01-01T10:15:30.007", -18260 + 36930007 / 86400000.0},
                                {"0001-01-01T00:00:01", -693593 + 1000 / 86400000.0},
                                {"1960-06-01T18:00:00", 22068.75},
                                {"1960-01-01T23:59:59", 21916 + 86399000 / 86400000.0},
                                {"2024-03-05T23:59:59.499", 45356 + 86399499 / 86400000.0},
                                {"0001-01-01T00:00:00", -693593},
                                {"9999-12-31T23:59", 2958465 + 86340000 / 86400000.0}});
}

TEST(ParseDateTime, RejectsOtherTexts) {
  ExpectRefusals(ParseDateTime,
                 "|2024-03-05|10:15:30|2024-03-05T|2024-03-05 10:15:30|2024-03-05t10:15:30|2024-03-05T10|"
                 "2024-03-05T10:1|2024-03-05T10:15:3|2024-03-05T10:15:30.|2024-03-05T10:15:30.1234|"
                 "2024-03-05TT10:15:30|2024-3-5T10:15:30|20240305T101530|T10:15:30|2024-03T10:15:30|"
                 "2024T10:15:30|2024-03-05T10:15:30z|2024-03-05T10:15:30ZZ|2024-03-05T10:15:30 |"
                 " 2024-03-05T10:15:30|2024-03-05T 10:15:30|2024-03-05T10:15:30T10:15:30|2024-03-05Z10:15:30|"
                 "2024-03-05T-1:15:30|now",
                 "is not a datetime (YYYY-MM-DDThh:mm or YYYY-MM-DDThh:mm:ss)");
  ExpectRefusals(ParseDateTime, "2023-02-29T10:15:30|0000-01-01T10:15:30", kNoDay);
  ExpectRefusals(ParseDateTime, "2024-03-05T24:00:00", kNoTime);
  // The library's arithmetic changes them.
  ExpectRefusals(
      ParseDateTime,
      "1899-12-29T06:00|1899-12-29T00:00:01|1899-12-28T23:59:59.501|2024-03-05T23:59:59.501|"
      "2024-03-05T23:59:59.999|1960-01-01T23:59:59.6|9999-12-31T23:59:59.9",
      "would arrive as another one: no time of day travels on 1899-12-29, nor in the last half second "
      "of a day; send a string");
}

TEST(SerialDate, TypeFollowsTheValue) {
  for (const double serial : {0.0, 0.5, 0.999, -0.25, -0.999}) EXPECT_STREQ(SerialDateType(serial), "time");
  for (const double serial : {1.0, -1.0, 45356.0, -693593.0}) EXPECT_STREQ(SerialDateType(serial), "date");
  for (const double serial : {1.5, 45356.25, -1.25}) EXPECT_STREQ(SerialDateType(serial), "datetime");
  for (const double serial : {-0.25, -0.999, -1.25, 1.5}) EXPECT_STREQ(SerialDateForm(serial), "datetime");
  for (const double serial : {0.0, -0.0, 0.5}) EXPECT_STREQ(SerialDateForm(serial), "time");
  for (const double serial : {-1.0, 1.0}) EXPECT_STREQ(SerialDateForm(serial), "date");
}

TEST(SerialDate, TextHasTheFormOfTheValue) {
  const SerialRow rows[] = {{"2024-03-05", 45356},
                            {"2024-03-05T10:15:30", 45356 + 36930000 / 86400000.0},
                            {"2024-03-05T10:15:30.007", 45356 + 36930007 / 86400000.0},
                            {"10:15:30.007", 36930007 / 86400000.0},
                            {"10:15:30.070", 36930070 / 86400000.0},
                            {"00:00:00", 0},
                            {"12:00:00", 0.5},
                            {"1899-12-29", -1},
                            {"0001-01-01", -693593},
                            {"9999-12-31", 2958465},
                            // Before day 0, time counts from the start of the day.
                            {"1899-12-28T18:00:00", -1.25},
                            {"1850-01-01T12:00:00", -18260 + 0.5},
                            {"1899-12-29T05:00:00", -1 + 18000000 / 86400000.0},
                            {"1899-12-29T18:00:00", -0.25},
                            {"1899-12-30T00:00:00", -1e-12},
                            // A time that rounds to midnight belongs to the next day.
                            {"2024-03-06T00:00:00", 45356.9999999999},
                            {"2024-03-05T23:59:59.600", 45356 + 86399600 / 86400000.0}};
  for (const SerialRow& row : rows) EXPECT_EQ(SerialDateText(row.serial), row.text);
  const SerialRow points[] = {{"2024-03-05T00:00:00", 45356},
                              {"2024-03-05T12:00:00", 45356.5},
                              {"1899-12-30T00:00:00", 0},
                              {"1899-12-30T12:00:00", 0.5},
                              {"1899-12-29T00:00:00", -1},
                              {"1899-12-31T00:00:00", 0.9999999999},
                              {"1899-12-29T05:00:00", -1 + 5 / 24.0}};
  for (const SerialRow& row : points) EXPECT_EQ(SerialDateTimeText(row.serial), row.text);
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double serial :
       {0.9999999999, 2958466.0, 2958466.5, -693594.0, 1e300, -1e300, infinity, -infinity, std::nan("")})
    EXPECT_FALSE(SerialDateText(serial).has_value()) << serial;
  for (const double serial : {2958466.0, -693594.0, 1e300, std::nan("")})
    EXPECT_FALSE(SerialDateTimeText(serial).has_value()) << serial;
}

}  // namespace
}  // namespace qv::cli

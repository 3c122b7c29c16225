#include "tools/date_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tools/failure.h"

namespace qv::cli {
namespace {

std::string Refusal(double (*parse)(const std::string&), const std::string& text) {
  try {
    parse(text);
    return "accepted";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kLocal);
    return failure.Message();
  }
}

struct SerialRow {
  const char* text;
  double serial;
};

TEST(DateText, DatesOfTheCalendarAreTaken) {
  const SerialRow rows[] = {{"1899-12-30", 0},       {"1899-12-31", 1},      {"1899-12-29", -1},
                            {"1900-01-01", 2},       {"1900-02-28", 60},     {"1900-03-01", 61},
                            {"1970-01-01", 25569},   {"2000-02-29", 36585},  {"2024-02-29", 45351},
                            {"2024-03-05", 45356},   {"2024-12-31", 45657},  {"9999-12-31", 2958465},
                            {"0001-01-01", -693593}, {"1600-02-29", -109512}};
  for (const SerialRow& row : rows) EXPECT_EQ(ParseDate(row.text), row.serial) << row.text;
}

TEST(DateText, OtherFormsOfADateAreRefused) {
  for (const char* text : {"",
                           "2024",
                           "2024-03",
                           "2024-3-5",
                           "24-03-05",
                           "2024-03-5",
                           "2024/03/05",
                           "20240305",
                           "05.03.2024",
                           "2024-03-05 ",
                           " 2024-03-05",
                           "2024-03-05Z",
                           "2024-03-05T10:15",
                           "+2024-03-05",
                           "-2024-03-05",
                           "02024-03-05",
                           "2024-03-05x",
                           "2024-0x-05",
                           "2024--3-05",
                           "2024-03-\xD9\xA1",
                           "today",
                           "2024-W10-2",
                           "2024-065",
                           "--03-05",
                           "2024-03-05-",
                           "2024-03-+5",
                           "NaN"})
    EXPECT_EQ(Refusal(ParseDate, text), std::string("'") + text + "' is not a date (YYYY-MM-DD)");
}

TEST(DateText, DaysThatDoNotExistAreRefused) {
  for (const char* text : {"2023-02-29", "1900-02-29", "2100-02-29", "2024-02-30", "2024-04-31", "2024-00-01",
                           "2024-13-01", "2024-01-00", "2024-01-32", "0000-01-01", "2024-99-99"})
    EXPECT_EQ(Refusal(ParseDate, text),
              std::string("'") + text + "' names no day of the calendar of the years 1 to 9999");
}

TEST(DateText, TimesAreFractionsOfADay) {
  const SerialRow rows[] = {{"00:00", 0},
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
                            {"00:00:00.001", 1 / 86400000.0},
                            {"23:59", 86340000 / 86400000.0},
                            {"23:59:59", 86399000 / 86400000.0},
                            {"23:59:59.999", 86399999 / 86400000.0}};
  for (const SerialRow& row : rows) EXPECT_EQ(ParseTime(row.text), row.serial) << row.text;
}

TEST(DateText, OtherFormsOfATimeAreRefused) {
  for (const char* text :
       {"",           "10",          "10:",           "10:5",      "1:15",       "10:15:",
        "10:15:3",    "10:15:30.",   "10:15:30.1234", "10:15.5",   "10:15:30,5", "10:15:30z",
        "10:15:30ZZ", "Z",           "10:15 ",        " 10:15",    "-10:15",     "10:15:30 Z",
        "10.15",      "1015",        "10:15:NaN",     "10:15:1e1", "T10:15",     "10:15:30.Z",
        "ten",        "10:15:30:00", "10:-5:00"})
    EXPECT_EQ(
        Refusal(ParseTime, text),
        std::string("'") + text + "' is not a time (hh:mm or hh:mm:ss, with up to 3 digits behind a '.')");
}

TEST(DateText, TimesThatDoNotExistAreRefused) {
  for (const char* text : {"24:00", "24:00:00", "10:60", "10:15:60", "99:99", "23:59:60Z"})
    EXPECT_EQ(Refusal(ParseTime, text),
              std::string("'") + text + "' names no time of day (00:00 to 23:59:59.999)");
}

TEST(DateText, OffsetsAreRefusedWithTheReason) {
  for (const char* text : {"10:15+02:00", "10:15-05:00", "10:15:30+00:00", "10:15:30.5-01:30", "10:15+2"})
    EXPECT_EQ(
        Refusal(ParseTime, text),
        std::string("'") + text + "' has an offset, but values travel without zone; write the time alone");
  EXPECT_EQ(
      Refusal(ParseDateTime, "2024-03-05T10:15:30+02:00"),
      "'2024-03-05T10:15:30+02:00' has an offset, but values travel without zone; write the time alone");
}

TEST(DateText, DateTimesAreDayAndFraction) {
  const SerialRow rows[] = {{"2024-03-05T00:00", 45356},
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
                            {"9999-12-31T23:59", 2958465 + 86340000 / 86400000.0}};
  for (const SerialRow& row : rows) EXPECT_EQ(ParseDateTime(row.text), row.serial) << row.text;
}

TEST(DateText, OtherFormsOfADateTimeAreRefused) {
  for (const char* text : {"",
                           "2024-03-05",
                           "10:15:30",
                           "2024-03-05T",
                           "2024-03-05 10:15:30",
                           "2024-03-05t10:15:30",
                           "2024-03-05T10",
                           "2024-03-05T10:1",
                           "2024-03-05T10:15:3",
                           "2024-03-05T10:15:30.",
                           "2024-03-05T10:15:30.1234",
                           "2024-03-05TT10:15:30",
                           "2024-3-5T10:15:30",
                           "20240305T101530",
                           "T10:15:30",
                           "2024-03T10:15:30",
                           "2024T10:15:30",
                           "2024-03-05T10:15:30z",
                           "2024-03-05T10:15:30ZZ",
                           "2024-03-05T10:15:30 ",
                           " 2024-03-05T10:15:30",
                           "2024-03-05T 10:15:30",
                           "2024-03-05T10:15:30T10:15:30",
                           "2024-03-05Z10:15:30",
                           "2024-03-05T-1:15:30",
                           "now"})
    EXPECT_EQ(Refusal(ParseDateTime, text),
              std::string("'") + text + "' is not a datetime (YYYY-MM-DDThh:mm or YYYY-MM-DDThh:mm:ss)");
}

TEST(DateText, DateTimesThatDoNotExistAreRefused) {
  EXPECT_EQ(Refusal(ParseDateTime, "2023-02-29T10:15:30"),
            "'2023-02-29T10:15:30' names no day of the calendar of the years 1 to 9999");
  EXPECT_EQ(Refusal(ParseDateTime, "0000-01-01T10:15:30"),
            "'0000-01-01T10:15:30' names no day of the calendar of the years 1 to 9999");
  EXPECT_EQ(Refusal(ParseDateTime, "2024-03-05T24:00:00"),
            "'2024-03-05T24:00:00' names no time of day (00:00 to 23:59:59.999)");
}

// The library's arithmetic makes another point in time of these.
TEST(DateText, DateTimesThatWouldArriveAsAnotherAreRefused) {
  for (const char* text :
       {"1899-12-29T06:00", "1899-12-29T00:00:01", "1899-12-28T23:59:59.501", "2024-03-05T23:59:59.501",
        "2024-03-05T23:59:59.999", "1960-01-01T23:59:59.6", "9999-12-31T23:59:59.9"})
    EXPECT_EQ(Refusal(ParseDateTime, text), std::string("'") + text +
                                                "' would arrive as another one: no time of day travels on "
                                                "1899-12-29, nor in the last half second "
                                                "of a day; send a string");
}

TEST(DateText, TypeFollowsTheValue) {
  for (const double serial : {0.0, 0.5, 0.999, -0.25, -0.999}) EXPECT_STREQ(SerialDateType(serial), "time");
  for (const double serial : {1.0, -1.0, 45356.0, -693593.0}) EXPECT_STREQ(SerialDateType(serial), "date");
  for (const double serial : {1.5, 45356.25, -1.25}) EXPECT_STREQ(SerialDateType(serial), "datetime");
}

TEST(DateText, FormDiffersFromTheTypeBeforeDayZeroAlone) {
  for (const double serial : {-0.25, -0.999, -1.25, 1.5}) EXPECT_STREQ(SerialDateForm(serial), "datetime");
  for (const double serial : {0.0, -0.0, 0.5}) EXPECT_STREQ(SerialDateForm(serial), "time");
  for (const double serial : {-1.0, 1.0}) EXPECT_STREQ(SerialDateForm(serial), "date");
}

TEST(DateText, ValuesAreWrittenAsTheirTypeSays) {
  EXPECT_EQ(SerialDateText(45356), "2024-03-05");
  EXPECT_EQ(SerialDateText(45356 + 36930000 / 86400000.0), "2024-03-05T10:15:30");
  EXPECT_EQ(SerialDateText(45356 + 36930007 / 86400000.0), "2024-03-05T10:15:30.007");
  EXPECT_EQ(SerialDateText(36930007 / 86400000.0), "10:15:30.007");
  EXPECT_EQ(SerialDateText(36930070 / 86400000.0), "10:15:30.070");
  EXPECT_EQ(SerialDateText(0), "00:00:00");
  EXPECT_EQ(SerialDateText(0.5), "12:00:00");
  EXPECT_EQ(SerialDateText(-1), "1899-12-29");
  EXPECT_EQ(SerialDateText(-693593), "0001-01-01");
  EXPECT_EQ(SerialDateText(2958465), "9999-12-31");
}

TEST(DateText, TimeBeforeDayZeroIsCountedFromItsDay) {
  EXPECT_EQ(SerialDateText(-1.25), "1899-12-28T18:00:00");
  EXPECT_EQ(SerialDateText(-18260 + 0.5), "1850-01-01T12:00:00");
  EXPECT_EQ(SerialDateText(-1 + 18000000 / 86400000.0), "1899-12-29T05:00:00");
  EXPECT_EQ(SerialDateText(-0.25), "1899-12-29T18:00:00");
  EXPECT_EQ(SerialDateText(-1e-12), "1899-12-30T00:00:00");
}

TEST(DateText, TimeThatRoundsToMidnightBelongsToTheNextDay) {
  EXPECT_EQ(SerialDateText(45356.9999999999), "2024-03-06T00:00:00");
  EXPECT_EQ(SerialDateText(45356 + 86399600 / 86400000.0), "2024-03-05T23:59:59.600");
}

TEST(DateText, ValuesThatAreNoDateHaveNoText) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double serial :
       {0.9999999999, 2958466.0, 2958466.5, -693594.0, 1e300, -1e300, infinity, -infinity, std::nan("")})
    EXPECT_FALSE(SerialDateText(serial).has_value()) << serial;
}

TEST(DateText, PointsInTimeHaveBothParts) {
  EXPECT_EQ(SerialDateTimeText(45356), "2024-03-05T00:00:00");
  EXPECT_EQ(SerialDateTimeText(45356.5), "2024-03-05T12:00:00");
  EXPECT_EQ(SerialDateTimeText(0), "1899-12-30T00:00:00");
  EXPECT_EQ(SerialDateTimeText(0.5), "1899-12-30T12:00:00");
  EXPECT_EQ(SerialDateTimeText(-1), "1899-12-29T00:00:00");
  EXPECT_EQ(SerialDateTimeText(0.9999999999), "1899-12-31T00:00:00");
  EXPECT_EQ(SerialDateTimeText(-1 + 18000000 / 86400000.0), "1899-12-29T05:00:00");
  for (const double serial : {2958466.0, -693594.0, 1e300, std::nan("")})
    EXPECT_FALSE(SerialDateTimeText(serial).has_value()) << serial;
}

}  // namespace
}  // namespace qv::cli

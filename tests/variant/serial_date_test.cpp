// Calendar dates and clock times as serial dates, and back.
#include "qvscriptwells/serial_date.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <initializer_list>
#include <limits>
#include <string>

#include "fixtures/thrown.h"

namespace qv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

constexpr double At(double day, double seconds) {
  return day + seconds / 86400.0;
}
constexpr double Milliseconds(double count) {
  return count / 86400000.0;
}

std::string Shown(const CalendarDate& date) {
  return std::to_string(date.year) + "/" + std::to_string(date.month) + "/" + std::to_string(date.day);
}
std::string Shown(const ClockTime& time) {
  return std::to_string(time.hour) + ":" + std::to_string(time.minute) + ":" + std::to_string(time.second) +
         "." + std::to_string(time.millisecond);
}

struct DateRow {
  std::int16_t year, month, day;
  double value;
};

TEST(EncodeDate, CountsDaysSinceTheThirtiethOfDecember1899) {
  const DateRow rows[] = {
      {1899, 12, 30, 0.0},     {1899, 12, 31, 1.0},      {1900, 1, 1, 2.0},         {1899, 12, 29, -1.0},
      {1900, 2, 28, 60.0},     {1900, 3, 1, 61.0},       {1969, 12, 31, 25568.0},   {1970, 1, 1, 25569.0},
      {2000, 1, 1, 36526.0},   {2000, 2, 29, 36585.0},   {2000, 3, 1, 36586.0},     {2000, 12, 31, 36891.0},
      {2024, 1, 1, 45292.0},   {2024, 2, 29, 45351.0},   {2024, 3, 5, 45356.0},     {2024, 12, 31, 45657.0},
      {2023, 12, 31, 45291.0}, {2024, 4, 30, 45412.0},   {2024, 6, 30, 45473.0},    {2024, 9, 30, 45565.0},
      {2024, 11, 30, 45626.0}, {1600, 2, 29, -109512.0}, {1582, 10, 10, -115863.0}, {1, 1, 1, -693593.0},
      {1, 12, 31, -693229.0},  {4, 2, 29, -692439.0},    {9999, 12, 31, 2958465.0}};
  for (const DateRow& row : rows)
    EXPECT_EQ(EncodeDate(row.year, row.month, row.day), row.value)
        << Shown(CalendarDate{row.year, row.month, row.day});
}

TEST(EncodeDate, RefusesOtherFields) {
  const CalendarDate rows[] = {
      {0, 1, 1},     {-1, 1, 1},     {10000, 1, 1},    {32767, 1, 1},     {-32768, 1, 1},
      {2024, 0, 1},  {2024, 13, 1},  {2024, -1, 1},    {2024, 32767, 1},  {2024, -32768, 1},
      {2024, 1, 0},  {2024, 1, 32},  {2024, 1, -1},    {2024, 4, 31},     {2024, 6, 31},
      {2024, 9, 31}, {2024, 11, 31}, {2024, 12, 32},   {2024, 2, 30},     {2023, 2, 29},
      {1900, 2, 29}, {2100, 2, 29},  {2024, 1, 32767}, {2024, 1, -32768}, {0, 0, 0}};
  for (const CalendarDate& row : rows)
    EXPECT_EQ(Thrown([&row] { EncodeDate(row.year, row.month, row.day); }),
              "EQvException 0x00000000 Invalid argument to date encode")
        << Shown(row);
}

// Negative fields count as they are.
TEST(EncodeTime, IsTheFractionOfADay) {
  const struct {
    std::int16_t hour, minute, second, millisecond;
    double milliseconds;
  } rows[] = {{0, 0, 0, 0, 0.0},
              {12, 0, 0, 0, 43200000.0},
              {10, 15, 30, 0, 36930000.0},
              {10, 15, 30, 7, 36930007.0},
              {0, 0, 0, 1, 1.0},
              {0, 0, 1, 0, 1000.0},
              {0, 1, 0, 0, 60000.0},
              {1, 0, 0, 0, 3600000.0},
              {23, 59, 59, 999, 86399999.0},
              {-1, 0, 0, 0, -3600000.0},
              {-1, 30, 0, 0, -1800000.0},
              {0, -1, 0, 0, -60000.0},
              {10, -15, 0, 0, 35100000.0},
              {0, 0, -1, 0, -1000.0},
              {0, 0, 0, -1, -1.0},
              {-24, 0, 0, 0, -86400000.0},
              {23, 59, 59, -32768, 86366232.0},
              {-25, -60, -60, -1000, -93661000.0},
              {-25536, 0, 0, 0, -91929600000.0},
              {-32768, -32768, -32768, -32768, -119963680768.0}};
  for (const auto& row : rows)
    EXPECT_EQ(EncodeTime(row.hour, row.minute, row.second, row.millisecond), Milliseconds(row.milliseconds))
        << row.milliseconds;
  EXPECT_EQ(EncodeTime(12, 0, 0, 0), 0.5);
  EXPECT_LT(EncodeTime(23, 59, 59, 999), 1.0);
}

TEST(EncodeTime, RefusesFieldsAboveTheirRange) {
  const ClockTime rows[] = {{24, 0, 0, 0},     {25, 0, 0, 0},    {32767, 0, 0, 0}, {0, 60, 0, 0},
                            {23, 60, 0, 0},    {0, 32767, 0, 0}, {0, 0, 60, 0},    {23, 59, 60, 0},
                            {0, 0, 32767, 0},  {0, 0, 0, 1000},  {0, 0, 0, 32767}, {-1, 60, 0, 0},
                            {-1, -1, -1, 1000}};
  for (const ClockTime& row : rows)
    EXPECT_EQ(Thrown([&row] { EncodeTime(row.hour, row.minute, row.second, row.millisecond); }),
              "EQvException 0x00000000 Invalid argument to time encode")
        << Shown(row);
}

struct DecodedDate {
  double value;
  const char* date;
};

TEST(DecodeDate, IsTheDayOfTheValue) {
  const DecodedDate rows[] = {{45356.0, "2024/3/5"},      {45356.75, "2024/3/5"},   {45351.0, "2024/2/29"},
                              {45352.0, "2024/3/1"},      {45657.0, "2024/12/31"},  {45658.0, "2025/1/1"},
                              {36585.5, "2000/2/29"},     {25569.0, "1970/1/1"},    {25569.999, "1970/1/1"},
                              {25570.0, "1970/1/2"},      {73109.5, "2100/2/28"},   {73110.0, "2100/3/1"},
                              {50424.0, "2038/1/19"},     {50425.0, "2038/1/20"},   {2958465.0, "9999/12/31"},
                              {2958465.75, "9999/12/31"}, {25568.0, "1969/12/31"},  {25568.75, "1969/12/31"},
                              {61.0, "1900/3/1"},         {60.0, "1900/2/28"},      {2.0, "1900/1/1"},
                              {1.0, "1899/12/31"},        {0.0, "1899/12/30"},      {-0.0, "1899/12/30"},
                              {0.25, "1899/12/30"},       {-0.25, "1899/12/29"},    {-1.0, "1899/12/29"},
                              {-1.25, "1899/12/28"},      {-109512.0, "1600/2/29"}, {-115863.5, "1582/10/9"},
                              {-693593.0, "1/1/1"},       {-693592.5, "1/1/1"},     {-693229.0, "1/12/31"},
                              {-692439.0, "4/2/29"}};
  for (const DecodedDate& row : rows) EXPECT_EQ(Shown(DecodeDate(row.value)), row.date) << row.value;
}

// Before 1970 seconds are rounded downwards too: the last one of a day belongs to it.
TEST(DecodeDate, HalfASecondIsAddedFirst) {
  const DecodedDate rows[] = {{At(45356.0, 86399.4), "2024/3/5"},     {At(45356.0, 86399.6), "2024/3/6"},
                              {At(45657.0, 86399.6), "2025/1/1"},     {At(25568.0, 86399.6), "1970/1/1"},
                              {At(2958465.0, 86399.0), "9999/12/31"}, {At(25568.0, 86398.0), "1969/12/31"},
                              {At(25568.0, 86399.0), "1969/12/31"},   {At(25567.0, 86399.6), "1969/12/31"},
                              {At(25567.0, 86399.0), "1969/12/30"},   {At(25567.0, 86399.4), "1969/12/30"}};
  for (const DecodedDate& row : rows) EXPECT_EQ(Shown(DecodeDate(row.value)), row.date) << row.value;
}

TEST(DecodeDate, RefusesValuesOutsideTheYearsOfTheCalendar) {
  for (const double value : {kNotANumber,
                             -kNotANumber,
                             kInfinity,
                             -kInfinity,
                             DBL_MAX,
                             -DBL_MAX,
                             1e300,
                             -1e300,
                             1e15,
                             -1e15,
                             2958466.0,
                             2958466.5,
                             At(2958465.0, 86399.7),
                             3e6,
                             1e8,
                             1e14,
                             -693594.5,
                             -693594.0,
                             -693595.0,
                             -1e6,
                             -1e8,
                             1.1e14,
                             2147483648.0,
                             -2147483649.0})
    EXPECT_EQ(Thrown([value] { DecodeDate(value); }),
              "EQvException 0x00000000 Invalid argument to date decode")
        << value;
}

void ExpectTime(const char* time, std::initializer_list<double> values) {
  for (const double value : values) EXPECT_EQ(Shown(DecodeTime(value)), time) << value;
}

TEST(DecodeTime, IsTheTimeOfDayWhateverTheDay) {
  ExpectTime("0:0:0.0", {0.0, -0.0, 1.0, 45356.0, -45356.0, 1e300, -1e300, DBL_MAX, DBL_TRUE_MIN});
  ExpectTime("0:0:0.1", {Milliseconds(1.0)});
  ExpectTime("0:0:0.7", {Milliseconds(7.0)});
  ExpectTime("0:0:0.999", {Milliseconds(999.0)});
  ExpectTime("10:15:30.0", {Milliseconds(36930000.0), 45356.0 + Milliseconds(36930000.0)});
  ExpectTime("10:15:30.7", {Milliseconds(36930007.0)});
  ExpectTime("12:0:0.0", {0.5, 4503599627370495.5});
  ExpectTime("18:0:0.0", {0.75, 45356.75});
  ExpectTime("23:59:59.999", {Milliseconds(86399999.0)});
}

TEST(DecodeTime, IsRoundedToTheMillisecond) {
  ExpectTime("0:0:0.0", {Milliseconds(0.4)});
  ExpectTime("0:0:0.1", {Milliseconds(0.6)});
  ExpectTime("0:0:1.0", {Milliseconds(999.6)});
  ExpectTime("0:1:0.0", {Milliseconds(59999.6)});
  ExpectTime("1:0:0.0", {Milliseconds(3599999.6)});
  ExpectTime("23:59:59.999", {Milliseconds(86399999.4)});
  ExpectTime("24:0:0.0", {Milliseconds(86399999.6), 0.999999999999, 45356.999999999993});
  ExpectTime("23:59:59.600", {At(45356.0, 86399.6)});
}

// Half a millisecond is added here too, so a negative time is one millisecond nearer to zero.
TEST(DecodeTime, KeepsTheSignInEveryFieldOfANegativeTime) {
  ExpectTime("-5:-59:-59.-999", {-0.25, -1.25});
  ExpectTime("-11:-59:-59.-999", {-0.5});
  ExpectTime("-17:-59:-59.-999", {-45356.75});
  ExpectTime("0:-29:-59.-999", {Milliseconds(-1800000.0)});
  ExpectTime("0:0:-59.-999", {Milliseconds(-60000.0)});
  ExpectTime("0:0:0.-999", {Milliseconds(-1000.0)});
  ExpectTime("0:0:0.0", {Milliseconds(-1.0), Milliseconds(-0.4)});
  ExpectTime("0:0:0.-1", {Milliseconds(-1.6)});
  ExpectTime("-23:-59:-59.-999", {Milliseconds(-86399999.8)});
}

TEST(DecodeTime, RefusesValuesThatAreNotFinite) {
  for (const double value : {kNotANumber, -kNotANumber, kInfinity, -kInfinity})
    EXPECT_EQ(Thrown([value] { DecodeTime(value); }),
              "EQvException 0x00000000 Invalid argument to time decode")
        << value;
}

}  // namespace
}  // namespace qv

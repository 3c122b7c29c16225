// The calendar types of C++20. This file is compiled as C++20.
#include "scriptwells/calendar.h"

#include <gtest/gtest.h>

#include "scriptwells/value.h"

namespace scriptwells {
namespace {

using namespace std::chrono_literals;
using std::chrono::year_month_day;

TEST(Calendar, DatesConvertBothWays) {
  for (const year_month_day day : {2024y / 2 / 29, 1y / 1 / 1, 9999y / 12 / 31, 1899y / 12 / 30}) {
    EXPECT_EQ(ToYearMonthDay(DateFrom(day)), day);
    EXPECT_EQ(Value(DateFrom(day)).As<std::chrono::sys_days>(), std::chrono::sys_days(day));
  }
  EXPECT_EQ(DateFrom(2024y / 3 / 5), (Date{2024, 3, 5}));
}

TEST(Calendar, OtherDatesAreRefused) {
  for (const year_month_day day :
       {2023y / 2 / 29, 2024y / 13 / 1, 2024y / 1 / 0, 0y / 1 / 1, 10000y / 1 / 1, -5y / 1 / 1})
    EXPECT_THROW(DateFrom(day), ConversionError) << static_cast<int>(day.year());
}

TEST(Calendar, TimesConvertBothWays) {
  const Time time = TimeFrom(std::chrono::hh_mm_ss<std::chrono::milliseconds>(10h + 15min + 30s + 7ms));
  EXPECT_EQ(time, (Time{10, 15, 30, 7}));
  EXPECT_EQ(ToHhMmSs(time).to_duration(), 10h + 15min + 30s + 7ms);
}

TEST(Calendar, DaysArePointsInTime) {
  const std::chrono::sys_days day = 2024y / 3 / 5;
  EXPECT_EQ(Value(day), Value(DateTime{{2024, 3, 5}, {}}));
  EXPECT_EQ(Value(DateTime{{2024, 3, 5}, {}}).As<std::chrono::sys_days>(), day);
  EXPECT_THROW(Value(DateTime{{2024, 3, 5}, {1, 0, 0, 0}}).As<std::chrono::sys_days>(), ConversionError);
}

// The comparison operators of the types work as C++20 reverses them.
TEST(Calendar, ValuesCompare) {
  EXPECT_TRUE(Value(5) == Value(5));
  EXPECT_TRUE(Value(5) != 6);
  EXPECT_TRUE((Date{2024, 3, 5} != Date{2024, 3, 6}));
  EXPECT_TRUE((Time{1, 2, 3, 4} == Time{1, 2, 3, 4}));
}

}  // namespace
}  // namespace scriptwells

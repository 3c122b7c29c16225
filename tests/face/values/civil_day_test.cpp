// The calendar, compared with that of the interfaces below.
#include "face/values/civil_day.h"

#include <gtest/gtest.h>

#include "qvscriptwells/serial_date.h"

namespace scriptwells {
namespace {

TEST(CivilDay, IsTheCalendarOfTheInterfaces) {
  for (int day = -693593; day <= 2958465; day += 13) {
    const Date date = DayOf(day);
    const qv::CalendarDate expected = qv::DecodeDate(day);
    ASSERT_EQ(date, (Date{expected.year, expected.month, expected.day})) << day;
    ASSERT_EQ(DayNumber(date), day);
    ASSERT_TRUE(IsDayOfCalendar(date)) << day;
  }
}

TEST(CivilDay, GoesOnOutside) {
  const std::pair<std::int64_t, Date> rows[] = {
      {-693594, {0, 12, 31}}, {-693959, {0, 1, 1}}, {-693960, {-1, 12, 31}}, {2958466, {10000, 1, 1}},
      {0, {1899, 12, 30}},    {-693899, {0, 3, 1}}, {-693900, {0, 2, 29}},   {-839691, {-400, 12, 31}}};
  for (const auto& [number, date] : rows) {
    EXPECT_EQ(DayOf(number), date) << number;
    EXPECT_EQ(DayNumber(date), number);
    EXPECT_TRUE(IsDay(date));
    EXPECT_EQ(IsDayOfCalendar(date), number == 0);
  }
  for (std::int64_t number = -10'000'000; number <= 10'000'000; number += 9973)
    ASSERT_EQ(DayNumber(DayOf(number)), number);
}

TEST(CivilDay, KnowsWhichDaysExist) {
  for (const Date& date : {Date{2024, 2, 29}, Date{2000, 2, 29}, Date{2023, 12, 31}, Date{1, 1, 1}})
    EXPECT_TRUE(IsDayOfCalendar(date)) << date;
  for (const Date& date :
       {Date{2023, 2, 29}, Date{1900, 2, 29}, Date{2024, 4, 31}, Date{2024, 0, 1}, Date{2024, 13, 1},
        Date{2024, 1, 0}, Date{2024, 1, 32}, Date{67560, 1, 1}, Date{-40000, 1, 1}, Date{2024, 1, -1}})
    EXPECT_FALSE(IsDay(date)) << date;
}

TEST(TimeOfDay, KnowsWhichExist) {
  for (const Time& time : {Time{}, Time{23, 59, 59, 999}}) EXPECT_TRUE(IsTimeOfDay(time)) << time;
  for (const Time& time : {Time{24, 0, 0, 0}, Time{0, 60, 0, 0}, Time{0, 0, 60, 0}, Time{0, 0, 0, 1000},
                           Time{-1, 0, 0, 0}, Time{0, -1, 0, 0}, Time{0, 0, -1, 0}, Time{0, 0, 0, -1}})
    EXPECT_FALSE(IsTimeOfDay(time)) << time;
  EXPECT_EQ(TimeOf(86'399'999), (Time{23, 59, 59, 999}));
  EXPECT_EQ(MillisecondsOf(Time{23, 59, 59, 999}), 86'399'999);
  EXPECT_EQ(TimeOf(0), Time());
}

}  // namespace
}  // namespace scriptwells

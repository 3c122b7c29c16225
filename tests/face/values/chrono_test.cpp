// Points in time and durations of std::chrono.
#include <chrono>
#include <cmath>
#include <limits>

#include "scriptwells/value.h"
#include "tests/face/refusal.h"

namespace scriptwells {
namespace {

using namespace std::chrono;
using testing::RefusalOf;

template <class D>
using Point = time_point<system_clock, D>;
using Days = duration<std::int64_t, std::ratio<86400>>;

constexpr char kOutside[] = "a point in time is outside the years 1 to 9999";
constexpr std::int64_t kFirst = -62135596800000;  // 0001-01-01, in milliseconds since 1970
constexpr std::int64_t kLast = 253402300799999;   // 9999-12-31T23:59:59.999

struct PointRow {
  std::int64_t milliseconds;
  const char* text;
};

TEST(TimePoints, ConvertBothWays) {
  const PointRow rows[] = {{0, "1970-01-01T00:00:00"},
                           {1, "1970-01-01T00:00:00.001"},
                           {-1, "1969-12-31T23:59:59.999"},
                           {1709633730500, "2024-03-05T10:15:30.500"},
                           {-2209161600000, "1899-12-30T00:00:00"},
                           {-11676096000000, "1600-01-01T00:00:00"},
                           {951782400000, "2000-02-29T00:00:00"},
                           {kFirst, "0001-01-01T00:00:00"},
                           {kLast, "9999-12-31T23:59:59.999"}};
  for (const PointRow& row : rows) {
    const TimePoint point{milliseconds(row.milliseconds)};
    const DateTime value = DateTime::From(point);
    EXPECT_EQ(value.ToString(), row.text);
    EXPECT_EQ(value.ToTimePoint(), point) << row.text;
    EXPECT_EQ(Value(point), Value(value));
    EXPECT_EQ(Value(value).As<TimePoint>(), point) << row.text;
  }
}

TEST(TimePoints, OutsideOfTheCalendarAreRefused) {
  for (const std::int64_t count : {kFirst - 1, kLast + 1, std::numeric_limits<std::int64_t>::min(),
                                   std::numeric_limits<std::int64_t>::max()})
    EXPECT_EQ(RefusalOf([&] { DateTime::From(TimePoint(milliseconds(count))); }), kOutside) << count;
  // Units whose milliseconds would overflow.
  EXPECT_EQ(RefusalOf([] { DateTime::From(Point<hours>::max()); }), kOutside);
  EXPECT_EQ(RefusalOf([] { DateTime::From(Point<hours>::min()); }), kOutside);
  EXPECT_EQ(RefusalOf([] { Value value(Point<seconds>::max()); }), kOutside);
  using Real = duration<double>;
  for (const double seconds : {std::nan(""), 1e300, -1e300, std::numeric_limits<double>::infinity()})
    EXPECT_EQ(RefusalOf([&] { DateTime::From(Point<Real>(Real(seconds))); }), kOutside) << seconds;
}

TEST(TimePoints, RoundDownToTheMillisecond) {
  EXPECT_EQ(DateTime::From(Point<nanoseconds>(nanoseconds(1'999'999))).time.millisecond, 1);
  EXPECT_EQ(DateTime::From(Point<nanoseconds>(nanoseconds(-1))).ToString(), "1969-12-31T23:59:59.999");
  EXPECT_EQ(DateTime::From(Point<duration<double>>(duration<double>(0.25))).time.millisecond, 250);
  EXPECT_EQ(DateTime::From(Point<nanoseconds>::max()).ToString(), "2262-04-11T23:47:16.854");
}

TEST(TimePoints, OfAnyUnitThatIsExact) {
  const Value noon(DateTime{{2024, 3, 5}, {12, 0, 0, 0}});
  EXPECT_EQ(noon.As<Point<seconds>>().time_since_epoch().count(), 1709640000);
  EXPECT_EQ(noon.As<Point<hours>>().time_since_epoch().count(), 474900);
  EXPECT_EQ(noon.As<system_clock::time_point>().time_since_epoch(), seconds(1709640000));
  EXPECT_EQ(noon.As<Point<duration<double>>>().time_since_epoch().count(), 1709640000.0);
  EXPECT_EQ(noon.As<std::optional<Point<seconds>>>()->time_since_epoch().count(), 1709640000);
  EXPECT_EQ(Value(Date{1970, 1, 2}).As<Point<Days>>().time_since_epoch().count(), 1);
  EXPECT_FALSE(Value().As<std::optional<TimePoint>>().has_value());
}

TEST(TimePoints, WhatDoesNotFitTheUnitIsRefused) {
  const std::string reason = " does not fit the unit that was asked for";
  const Value half(DateTime{{2024, 3, 5}, {12, 0, 0, 500}});
  EXPECT_EQ(RefusalOf([&] { half.As<Point<seconds>>(); }), "the datetime 2024-03-05T12:00:00.500" + reason);
  EXPECT_EQ(RefusalOf([&] { half.As<Point<Days>>(); }), "the datetime 2024-03-05T12:00:00.500" + reason);
  // 64 bits of nanoseconds hold the years 1677 to 2262.
  const Value first(DateTime{{1, 1, 1}, {}});
  const Value last(DateTime{{9999, 12, 31}, {23, 59, 59, 999}});
  EXPECT_EQ(RefusalOf([&] { first.As<Point<nanoseconds>>(); }), "the datetime 0001-01-01T00:00:00" + reason);
  EXPECT_EQ(RefusalOf([&] { last.As<Point<nanoseconds>>(); }),
            "the datetime 9999-12-31T23:59:59.999" + reason);
  EXPECT_EQ(RefusalOf([&] { last.As<Point<duration<std::int32_t>>>(); }),
            "the datetime 9999-12-31T23:59:59.999" + reason);
  EXPECT_EQ(last.As<Point<microseconds>>().time_since_epoch().count(), kLast * 1000);
  EXPECT_EQ(first.As<TimePoint>().time_since_epoch().count(), kFirst);
  EXPECT_EQ(RefusalOf([] { Value(5).As<TimePoint>(); }), "the int 5 is not a datetime");
  EXPECT_EQ(RefusalOf([] {
              Value(Time{1, 2, 3, 0}).As<TimePoint>();
            }),
            "the time 01:02:03 is not a datetime");
}

// An answer can be a day outside.
TEST(TimePoints, OfDaysAroundTheCalendar) {
  EXPECT_EQ((DateTime{{0, 12, 31}, {}}.ToTimePoint().time_since_epoch().count()), kFirst - 86'400'000);
  EXPECT_EQ((DateTime{{10000, 1, 1}, {}}.ToTimePoint().time_since_epoch().count()), kLast + 1);
}

TEST(TimePoints, NeedADayAndATimeThatExist) {
  const DateTime rows[] = {{{2023, 2, 29}, {}},
                           {{2024, 13, 1}, {}},
                           {{2024, 1, 0}, {}},
                           {{40000, 1, 1}, {}},
                           {{2024, 1, 1}, {24, 0, 0, 0}},
                           {{2024, 1, 1}, {0, 60, 0, 0}},
                           {{2024, 1, 1}, {0, 0, -1, 0}},
                           {{2024, 1, 1}, {0, 0, 0, 1000}}};
  for (const DateTime& row : rows)
    EXPECT_EQ(RefusalOf([&] { row.ToTimePoint(); }), "'" + row.ToString() + "' is no point in time");
}

struct SpanRow {
  std::int64_t milliseconds;
  const char* text;
};

TEST(Spans, ConvertBothWays) {
  const SpanRow rows[] = {{0, "P0"},
                          {1, "PT0.001S"},
                          {-1, "-PT0.001S"},
                          {90'000, "PT1M30S"},
                          {93'784'500, "P1DT2H3M4.5S"},
                          {-86'400'000, "-P1D"},
                          {2'831'155'199'999, "P32767DT23H59M59.999S"},
                          {-2'831'155'199'999, "-P32767DT23H59M59.999S"}};
  for (const SpanRow& row : rows) {
    const Duration duration = Duration::From(milliseconds(row.milliseconds));
    EXPECT_EQ(duration.ToString(), row.text);
    EXPECT_EQ(duration.ToMilliseconds().count(), row.milliseconds) << row.text;
    EXPECT_EQ(Value(duration).As<milliseconds>().count(), row.milliseconds) << row.text;
  }
}

TEST(Spans, TooLongOnesAreRefused) {
  for (const std::int64_t count :
       {std::int64_t{2'831'155'200'000}, std::int64_t{-2'831'155'200'000},
        std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()})
    EXPECT_EQ(RefusalOf([&] { Duration::From(milliseconds(count)); }), "a span of more than 32767 days")
        << count;
}

TEST(Spans, OfAnyUnitThatIsExact) {
  const Value span(Duration::Parse("P1DT1H"));
  EXPECT_EQ(span.As<hours>().count(), 25);
  EXPECT_EQ(span.As<nanoseconds>().count(), 90'000'000'000'000);
  EXPECT_EQ(span.As<duration<double>>().count(), 90000.0);
  EXPECT_EQ(RefusalOf([&] { span.As<Days>(); }),
            "the duration P1DT1H does not fit the unit that was asked for");
  EXPECT_EQ(RefusalOf([] { Value(Duration::Parse("P32767D")).As<duration<std::int8_t>>(); }),
            "the duration P32767D does not fit the unit that was asked for");
  EXPECT_EQ(RefusalOf([] { Value(1).As<seconds>(); }), "the int 1 is not a duration");
}

TEST(Spans, WhatHasNoLengthIsRefused) {
  for (const char* text : {"P1Y", "P1M", "-P1Y2M3D"})
    EXPECT_EQ(RefusalOf([&] { Duration::Parse(text).ToMilliseconds(); }),
              std::string("the duration ") + text + " has years or months, whose lengths vary");
  Duration odd;
  for (const double seconds :
       {0.0001, 1.00005, 1e16, std::nan(""), std::numeric_limits<double>::infinity()}) {
    odd.seconds = seconds;
    EXPECT_EQ(RefusalOf([&] { odd.ToMilliseconds(); }),
              "the duration " + odd.ToString() + " is no whole number of milliseconds");
  }
  // All counts at their ends.
  const int most = std::numeric_limits<int>::max();
  EXPECT_EQ((Duration{true, 0, 0, most, most, most, 1e15}.ToMilliseconds().count()),
            -(std::int64_t{most} * (86'400'000 + 3'600'000 + 60'000) + 1'000'000'000'000'000'000));
}

}  // namespace
}  // namespace scriptwells

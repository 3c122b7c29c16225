// Points in time of std::chrono.
#include <chrono>

#include "face/text/failures.h"
#include "face/values/civil_day.h"
#include "scriptwells/types.h"

namespace scriptwells {

namespace {

using std::chrono::milliseconds;

constexpr std::int64_t kEpoch = 25569;  // the number of 1970-01-01
constexpr std::int64_t kDay = 86'400'000;

}  // namespace

DateTime DateTime::From(TimePoint point) {
  static const milliseconds first((DayNumber({1, 1, 1}) - kEpoch) * kDay);
  static const milliseconds end((DayNumber({9999, 12, 31}) + 1 - kEpoch) * kDay);
  const milliseconds span = point.time_since_epoch();
  if (span < first || span >= end) RefuseConversion("a point in time is outside the years 1 to 9999");
  const std::int64_t fromFirst = (span - first).count();
  return {DayOf(DayNumber({1, 1, 1}) + fromFirst / kDay), TimeOf(fromFirst % kDay)};
}

TimePoint DateTime::ToTimePoint() const {
  if (!IsDay(date) || !IsTimeOfDay(time)) RefuseConversion("'" + ToString() + "' is no point in time");
  return TimePoint(milliseconds((DayNumber(date) - kEpoch) * kDay + MillisecondsOf(time)));
}

}  // namespace scriptwells

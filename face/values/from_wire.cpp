// Values of answers and cells.
#include <cmath>

#include "face/text/failures.h"
#include "face/text/number_text.h"
#include "face/values/civil_day.h"
#include "face/values/wire_value.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/serial_date.h"

namespace scriptwells {

namespace {

// Far more than an answer can hold, in days.
constexpr double kMostDays = 1e7;

// Before day 0, too, the day is the one on which the value lies. A time that rounds to midnight belongs to
// the next day.
DateTime PointOf(double serial) {
  double day = std::floor(serial);
  qv::ClockTime time = qv::DecodeTime(serial - day);
  if (time.hour == 24) {
    time = {};
    day += 1;
  }
  return {DayOf(static_cast<std::int64_t>(day)), {time.hour, time.minute, time.second, time.millisecond}};
}

// The number decides on the type but in columns of datetimes, and on day 0 in columns of dates. The whole
// part is 0 on day 0 and on the day before it.
Value OfSerial(double serial, std::int32_t columnType) {
  if (!(std::abs(serial) < kMostDays))
    throw Error(Phase::kAnswer, "a date is out of range: " + NumberText(serial));
  const DateTime point = PointOf(serial);
  const bool isMidnight = serial == std::trunc(serial);
  if (columnType == qv::kColumnDateTime) return point;
  if (isMidnight && (serial != 0 || columnType == qv::kColumnDate)) return point.date;
  const bool isOnDayZero = serial >= 0 && point.date == Date();
  return isOnDayZero ? Value(point.time) : Value(point);
}

Duration Read(qv::IDuration& object) {
  const auto check = [&object](qv::HRESULT code) { qv::ThrowIfFailed(code, &object, qv::IDuration::kIid); };
  const auto count = [&](qv::HRESULT (qv::IDuration::*get)(std::int16_t*) noexcept) {
    std::int16_t value = 0;
    check((object.*get)(&value));
    return value;
  };
  Duration duration;
  qv::VARIANT_BOOL negative = qv::VARIANT_FALSE;
  check(object.get_Negative(&negative));
  duration.negative = negative != qv::VARIANT_FALSE;
  duration.years = count(&qv::IDuration::get_Year);
  duration.months = count(&qv::IDuration::get_Month);
  duration.days = count(&qv::IDuration::get_Day);
  duration.hours = count(&qv::IDuration::get_Hour);
  duration.minutes = count(&qv::IDuration::get_Min);
  check(object.get_Sec(&duration.seconds));
  return duration;
}

Link Read(qv::IUrl& object) {
  qv::WideString url;
  qv::WideString caption;
  qv::ThrowIfFailed(object.get_Url(&url), &object, qv::IUrl::kIid);
  qv::ThrowIfFailed(object.get_UrlCaption(&caption), &object, qv::IUrl::kIid);
  return {qv::ToUtf8(url), qv::ToUtf8(caption)};
}

Value OfObject(qv::IUnknown* object) {
  if (object == nullptr) return {};
  if (const qv::IDurationPtr duration = qv::As<qv::IDuration>(object)) return Read(*duration);
  if (const qv::IUrlPtr url = qv::As<qv::IUrl>(object)) return Read(*url);
  throw Error(Phase::kAnswer, "an object that is neither a duration nor a link");
}

Value OfText(qv::BStr text) {
  if (text == nullptr) return {};
  return qv::ToUtf8(std::u16string_view(text, qv::StringLength(text)));
}

}  // namespace

Value FromWire(const qv::Variant& variant, std::int32_t columnType) {
  const qv::VariantData& data = variant.Data();
  try {
    switch (variant.Tag()) {
      case qv::VT_EMPTY:
      case qv::VT_NULL:
        return {};
      case qv::VT_BOOL:
        return data.boolVal != qv::VARIANT_FALSE;
      case qv::VT_I1:
        return data.cVal;
      case qv::VT_UI1:
        return static_cast<std::int16_t>(data.bVal);
      case qv::VT_I2:
        return data.iVal;
      case qv::VT_UI2:
        return data.uiVal;
      case qv::VT_I4:
      case qv::VT_INT:
        return data.lVal;
      case qv::VT_UI4:
      case qv::VT_UINT:
        return data.ulVal;
      case qv::VT_I8:
        return data.llVal;
      case qv::VT_UI8:
        return data.ullVal;
      case qv::VT_R4:
        return data.fltVal;
      case qv::VT_R8:
        return data.dblVal;
      case qv::VT_BSTR:
        return OfText(data.bstrVal);
      case qv::VT_DATE:
        return OfSerial(data.date, columnType);
      case qv::VT_UNKNOWN:
      case qv::VT_DISPATCH:
        return OfObject(data.punkVal);
      default:
        throw Error(Phase::kAnswer, "a value of an unknown type: tag " + std::to_string(variant.Tag()));
    }
  } catch (const qv::_com_error& error) {
    ThrowFailure(Phase::kAnswer, error);
  }
}

}  // namespace scriptwells

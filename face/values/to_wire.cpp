// Values of arguments.
#include <utf8.h>

#include <cmath>

#include "face/text/failures.h"
#include "face/text/number_text.h"
#include "face/values/civil_day.h"
#include "face/values/sent_form.h"
#include "face/values/wire_value.h"
#include "qvscriptwells/create_objects.h"

namespace scriptwells {

namespace {

// Servers do not agree on a text for infinities and NaN.
template <class T>
void CheckFinite(T value) {
  if (!std::isfinite(value)) RefuseConversion("'" + NumberText(value) + "' is not a finite number");
}

qv::Variant ObjectOf(const Duration& value) {
  const qv::IDurationPtr object = qv::CreateDuration();
  const auto check = [&object](qv::HRESULT code) {
    qv::ThrowIfFailed(code, object.get(), qv::IDuration::kIid);
  };
  const auto put = [&](qv::HRESULT (qv::IDuration::*property)(std::int16_t) noexcept, int count) {
    check((object.get()->*property)(static_cast<std::int16_t>(count)));
  };
  check(object->put_Negative(value.negative ? qv::VARIANT_TRUE : qv::VARIANT_FALSE));
  put(&qv::IDuration::put_Year, value.years);
  put(&qv::IDuration::put_Month, value.months);
  put(&qv::IDuration::put_Day, value.days);
  put(&qv::IDuration::put_Hour, value.hours);
  put(&qv::IDuration::put_Min, value.minutes);
  check(object->put_Sec(value.seconds));
  return qv::Variant::FromObject(object.get());
}

struct Sender {
  qv::Variant operator()(std::monostate) const { RefuseConversion("an empty value cannot be sent"); }
  qv::Variant operator()(bool value) const { return qv::Variant::FromBool(value); }
  qv::Variant operator()(std::int8_t value) const { return qv::Variant::FromByte(value); }
  qv::Variant operator()(std::int16_t value) const { return qv::Variant::FromShort(value); }
  qv::Variant operator()(std::int32_t value) const { return qv::Variant::FromInt(value); }
  qv::Variant operator()(std::int64_t value) const { return qv::Variant::FromLong(value); }
  qv::Variant operator()(float value) const {
    CheckFinite(value);
    return qv::Variant::FromFloat(value);
  }
  qv::Variant operator()(double value) const {
    CheckFinite(value);
    return qv::Variant::FromDouble(value);
  }
  qv::Variant operator()(const std::string& value) const {
    const qv::WideString text = qv::FromUtf8(value);
    // Few texts hold the character that replaces other bytes.
    if (text.view().find(u'\uFFFD') != std::u16string_view::npos &&
        !utf8::is_valid(value.begin(), value.end()))
      RefuseConversion(kNotUtf8);
    return qv::Variant::FromString(text);
  }
  qv::Variant operator()(const Date& value) const {
    if (!IsDayOfCalendar(value)) RefuseDay("'" + value.ToString() + "'");
    return qv::Variant::FromDate(SerialNumber(value));
  }
  qv::Variant operator()(const Time& value) const {
    if (!IsTimeOfDay(value)) RefuseTime("'" + value.ToString() + "'");
    return qv::Variant::FromDate(SerialNumber(value));
  }
  qv::Variant operator()(const DateTime& value) const {
    CheckSent(value);
    return qv::Variant::FromDate(SerialNumber(value));
  }
  qv::Variant operator()(const Duration& value) const {
    CheckSent(value);
    return ObjectOf(value);
  }
  qv::Variant operator()(const Link&) const { RefuseConversion(kLinkIsNotSent); }
  qv::Variant operator()(const Table&) const { RefuseConversion(kTableIsNotSent); }
};

}  // namespace

qv::Variant ToWire(const Value& value) {
  try {
    return value.Visit(Sender());
  } catch (const qv::_com_error& error) {
    ThrowFailure(Phase::kConversion, error);
  }
}

}  // namespace scriptwells

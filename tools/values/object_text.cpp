#include "tools/values/object_text.h"

#include <algorithm>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "tools/report/failure.h"

namespace qv::cli {

namespace {

IDurationPtr AsDuration(const Variant& value) {
  return As<IDuration>(value.Object());
}

IUrlPtr AsUrl(const Variant& value) {
  return As<IUrl>(value.Object());
}

std::string DurationText(IUnknown* duration) {
  const IDurationRawPtr raw = As<IDurationRaw>(duration);
  if (!raw) return "";
  WideString text;
  ThrowIfFailed(raw->GetText(&text), raw.get(), IDurationRaw::kIid);
  return ToUtf8(text);
}

// Except for the seconds, whose last digits are not sent.
bool IsSame(const DurationFields& a, const DurationFields& b) {
  return a.negative == b.negative && a.years == b.years && a.months == b.months && a.days == b.days &&
         a.hours == b.hours && a.minutes == b.minutes;
}

// A text with an exponent is not a valid duration.
bool Arrives(const DurationFields& wanted, const Variant& value, const std::string& sent) {
  const std::optional<DurationFields> kept = ReadDuration(value);
  try {
    return kept && IsSame(*kept, wanted) && kept->seconds == wanted.seconds &&
           IsSame(ScanDuration(sent), wanted);
  } catch (const Failure&) {
    return false;
  }
}

}  // namespace

Variant ParseDuration(const std::string& text) {
  const DurationFields wanted = ScanDuration(text);
  Variant value = Variant::FromObject(CreateDuration(FromUtf8(text)).get());
  const std::string sent = ObjectText(value);
  if (!Arrives(wanted, value, sent))
    throw Failure(ExitStatus::kLocal,
                  "'" + text + "' would travel as '" + sent + "'; write it in other units");
  return value;
}

std::optional<DurationFields> ReadDuration(const Variant& value) {
  const IDurationPtr duration = AsDuration(value);
  if (!duration) return std::nullopt;
  const auto check = [&duration](HRESULT code) { ThrowIfFailed(code, duration.get(), IDuration::kIid); };
  DurationFields fields;
  VARIANT_BOOL negative = VARIANT_FALSE;
  check(duration->get_Negative(&negative));
  fields.negative = negative != VARIANT_FALSE;
  check(duration->get_Year(&fields.years));
  check(duration->get_Month(&fields.months));
  check(duration->get_Day(&fields.days));
  check(duration->get_Hour(&fields.hours));
  check(duration->get_Min(&fields.minutes));
  check(duration->get_Sec(&fields.seconds));
  return fields;
}

bool HasWrappedCount(const Variant& value) {
  const std::optional<DurationFields> fields = ReadDuration(value);
  return fields &&
         std::min({fields->years, fields->months, fields->days, fields->hours, fields->minutes}) < 0;
}

std::optional<UrlFields> ReadUrl(const Variant& value) {
  const IUrlPtr url = AsUrl(value);
  if (!url) return std::nullopt;
  WideString link;
  WideString caption;
  ThrowIfFailed(url->get_Url(&link), url.get(), IUrl::kIid);
  ThrowIfFailed(url->get_UrlCaption(&caption), url.get(), IUrl::kIid);
  return UrlFields{ToUtf8(link), ToUtf8(caption)};
}

IRecordListPtr AsRecordList(const Variant& value) {
  return As<IRecordList>(value.Object());
}

std::string ObjectText(const Variant& value) {
  if (const IDurationPtr duration = AsDuration(value)) return DurationText(duration.get());
  if (const std::optional<UrlFields> url = ReadUrl(value)) return url->url;
  return "";
}

const char* ObjectType(const Variant& value) {
  if (AsDuration(value)) return "duration";
  if (AsUrl(value)) return "url";
  return AsRecordList(value) ? "recordlist" : "object";
}

}  // namespace qv::cli

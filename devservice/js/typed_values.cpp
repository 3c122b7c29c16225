#include "devservice/js/typed_values.h"

#include <charconv>
#include <cmath>
#include <memory>

#include "devservice/js/handles.h"
#include "devservice/js/value_objects.h"
#include "devservice/values/date_text.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

constexpr double kTwoTo63 = 9223372036854775808.0;

// The private data of typed.int and similar functions.
struct Converter {
  const ValueType* type;
  const DateReader* dates;  // Borrowed.
};

// The arguments of one call.
struct Arguments {
  JSValueRef value;
  JSValueRef caption;  // undefined without one
};

bool WriteInteger(JSContextRef context, const ValueType& type, JSValueRef value, std::string& text) {
  std::int64_t number = 0;
  if (!IntegerOf(context, value, number)) return false;
  text = std::to_string(number);
  return number >= type.least && number <= type.greatest;
}

bool WriteFloat(JSContextRef context, JSValueRef value, std::string& text) {
  if (!JSValueIsNumber(context, value)) return false;
  const double number = JSValueToNumber(context, value, nullptr);
  // From here on the nearest float is an infinity: half a unit above the greatest float.
  constexpr double kBorder = 3.4028235677973366e38;
  if (std::isfinite(number) && std::fabs(number) >= kBorder) return false;
  text = FormatFloat(static_cast<float>(number));
  return true;
}

bool WriteDouble(JSContextRef context, JSValueRef value, std::string& text) {
  if (!JSValueIsNumber(context, value)) return false;
  text = FormatDouble(JSValueToNumber(context, value, nullptr));
  return true;
}

bool WriteBoolean(JSContextRef context, JSValueRef value, std::string& text) {
  // Not the spelling of a plain boolean, so that clients get both.
  text = JSValueToBoolean(context, value) ? "1" : "0";
  return JSValueIsBoolean(context, value);
}

bool WriteMoment(JSContextRef context, const Converter& converter, JSValueRef value, std::string& text) {
  const double time = converter.dates->TimeOf(context, value);
  if (!IsDateInRange(time)) return false;
  text = FormatMoment(converter.type->kind, static_cast<std::int64_t>(time));
  return true;
}

bool WriteDuration(JSContextRef context, JSValueRef value, std::string& text) {
  Duration duration;
  if (!ReadDurationFields(context, value, duration)) return false;
  text = FormatDuration(duration);
  return true;
}

bool WriteUrl(JSContextRef context, const Arguments& arguments, std::string& text) {
  UrlValue url;
  const bool whole = JSValueIsObject(context, arguments.value);
  if (whole && !JSValueIsUndefined(context, arguments.caption)) return false;
  if (whole ? !ReadUrlFields(context, arguments.value, url)
            : !ReadUrlParts(context, arguments.value, arguments.caption, url)) {
    return false;
  }
  text = FormatUrl(url);
  return true;
}

// Dates, times and durations may also be given as texts.
bool NormaliseString(JSContextRef context, const ValueType& type, JSValueRef value, std::string& text) {
  std::string written;
  return CarriableText(context, value, written, nullptr) && NormaliseText(type, written, text);
}

bool WriteTyped(JSContextRef context, const Converter& converter, const Arguments& arguments,
                std::string& text, JSValueRef* exception) {
  const ValueType& type = *converter.type;
  const JSValueRef value = arguments.value;
  switch (type.kind) {
    case ValueKind::kInteger:
      return WriteInteger(context, type, value, text);
    case ValueKind::kBoolean:
      return WriteBoolean(context, value, text);
    case ValueKind::kFloat:
      return WriteFloat(context, value, text);
    case ValueKind::kDouble:
      return WriteDouble(context, value, text);
    case ValueKind::kString:
      return CarriableText(context, value, text, exception);
    case ValueKind::kDate:
    case ValueKind::kTime:
    case ValueKind::kDateTime:
      if (JSValueIsString(context, value)) return NormaliseString(context, type, value, text);
      return WriteMoment(context, converter, value, text);
    case ValueKind::kDuration:
      if (JSValueIsString(context, value)) return NormaliseString(context, type, value, text);
      return WriteDuration(context, value, text);
    case ValueKind::kUrl:
      return WriteUrl(context, arguments, text);
  }
  return false;
}

JSClassRef TypedValueClass() {
  static JSClassRef shared = MakeClass("TypedValue", nullptr, DeletePrivate<TypedValue>);
  return shared;
}

struct KindHint {
  ValueKind kind;
  const char* text;
};

// Valid values, for the message about an invalid one.
constexpr KindHint kHints[] = {
    {ValueKind::kDate, " (a Date of the years 1 to 9999, or a text such as \"2024-03-05\")"},
    {ValueKind::kTime, " (a Date of the years 1 to 9999, or a text such as \"10:15:30.500Z\")"},
    {ValueKind::kDateTime,
     " (a Date of the years 1 to 9999, or a text such as \"2024-03-05T10:15:30.500Z\")"},
    {ValueKind::kDuration, " (an object such as {days: 1, hours: 2}, or a text such as \"P1DT2H\")"},
    {ValueKind::kUrl, " (an object such as {url, caption}, or two texts, without the marks <URL> and <C>)"},
};

// The message about a wrong number of arguments; null when the number is right.
const char* WrongCount(const ValueType& type, std::size_t count) {
  if (type.kind == ValueKind::kUrl) return count == 1 || count == 2 ? nullptr : " takes one or two values.";
  return count == 1 ? nullptr : " takes one value.";
}

// The body of typed.int and similar functions.
JSValueRef CallTyped(JSContextRef context, JSObjectRef function, JSObjectRef, std::size_t count,
                     const JSValueRef arguments[], JSValueRef* exception) {
  const auto& converter = *static_cast<const Converter*>(JSObjectGetPrivate(function));
  const ValueType& type = *converter.type;
  const std::string call = std::string("typed.") + type.name;
  const JSValueRef undefined = JSValueMakeUndefined(context);
  if (const char* wrong = WrongCount(type, count)) {
    *exception = MakeError(context, call + wrong);
    return undefined;
  }
  auto value = std::make_unique<TypedValue>(TypedValue{&type, ""});
  const Arguments given{arguments[0], count > 1 ? arguments[1] : undefined};
  if (!WriteTyped(context, converter, given, value->text, exception)) {
    if (!*exception)
      *exception =
          MakeError(context, call + ": the value is none of this type" + DescribeWelcome(type) + ".");
    return undefined;
  }
  return JSObjectMake(context, TypedValueClass(), value.release());
}

JSClassRef ConverterClass() {
  static JSClassRef shared = MakeClass("TypedConverter", CallTyped, DeletePrivate<Converter>);
  return shared;
}

}  // namespace

JSObjectRef InstallTyped(JSContextRef context, JSObjectRef global, const DateReader& dates) {
  JSObjectRef typed = JSObjectMake(context, nullptr, nullptr);
  SetProperty(context, global, "typed", typed);
  for (const ValueType* type = BeginValueTypes(); type != EndValueTypes(); ++type) {
    SetProperty(context, typed, type->name,
                JSObjectMake(context, ConverterClass(), new Converter{type, &dates}));
  }
  return typed;
}

bool WriteTypedText(JSContextRef context, const ValueType& type, const DateReader& dates, JSValueRef value,
                    std::string& text, JSValueRef* exception) {
  return WriteTyped(context, {&type, &dates}, {value, JSValueMakeUndefined(context)}, text, exception);
}

std::string DescribeWelcome(const ValueType& type) {
  for (const KindHint& hint : kHints) {
    if (hint.kind == type.kind) return hint.text;
  }
  if (type.kind != ValueKind::kInteger) return "";
  return " (" + std::to_string(type.least) + " to " + std::to_string(type.greatest) + ")";
}

const TypedValue* TypedValueOf(JSContextRef context, JSValueRef value) {
  return PrivateOf<TypedValue>(context, value, TypedValueClass());
}

bool IntegerOf(JSContextRef context, JSValueRef value, std::int64_t& result) {
  if (JSValueIsBigInt(context, value)) {
    const std::string digits = Utf16ToUtf8(TextOfValue(context, value, nullptr).value_or(u""));
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), result);
    return error == std::errc() && end == digits.data() + digits.size();
  }
  if (!JSValueIsNumber(context, value)) return false;
  const double number = JSValueToNumber(context, value, nullptr);
  if (!(number >= -kTwoTo63 && number < kTwoTo63) || number != std::trunc(number)) return false;
  result = static_cast<std::int64_t>(number);
  return true;
}

}  // namespace qv::devservice

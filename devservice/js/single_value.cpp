#include "devservice/js/single_value.h"

#include <cmath>
#include <optional>

#include "devservice/js/handles.h"
#include "devservice/js/script_fault.h"
#include "devservice/js/typed_values.h"
#include "devservice/js/value_objects.h"
#include "devservice/values/date_text.h"
#include "devservice/values/fault_codes.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

ScriptResult MakeValue(const char* type, std::string text) {
  return {ResultKind::kValue, type, std::move(text), 0, ""};
}

ScriptResult ResultOfNumber(double number) {
  const bool isInt = number >= -2147483648.0 && number <= 2147483647.0 && number == std::trunc(number) &&
                     !(number == 0 && std::signbit(number));
  if (isInt) return MakeValue("int", std::to_string(static_cast<std::int64_t>(number)));
  return MakeValue("double", FormatDouble(number));
}

ScriptResult ResultOfBigInt(JSContextRef context, JSValueRef value) {
  std::int64_t number = 0;
  if (IntegerOf(context, value, number)) return MakeValue("long", std::to_string(number));
  return MakeFault(kNoWireForm, "The script's BigInt is beyond the range of the type long.");
}

ScriptResult ResultOfString(JSContextRef context, JSValueRef value) {
  const std::u16string units = TextOfValue(context, value, nullptr).value_or(u"");
  const std::size_t bad = FindForbiddenUnit(units);
  if (bad == std::u16string::npos) return MakeValue("string", Utf16ToUtf8(units));
  return MakeFault(kNoWireForm, "The script's text holds the character code " +
                                    std::to_string(static_cast<unsigned>(units[bad])) + " at position " +
                                    std::to_string(bad) + ", which XML cannot carry.");
}

ScriptResult ResultOfDate(double time) {
  if (IsDateInRange(time)) return MakeValue("datetime", FormatDateTime(static_cast<std::int64_t>(time)));
  return MakeFault(kNoWireForm, std::isnan(time) ? "The script's value is an invalid Date."
                                                 : "The script's Date is beyond the years 1 to 9999.");
}

ScriptResult ResultOfDuration(JSContextRef context, JSValueRef value) {
  Duration duration;
  if (ReadDurationFields(context, value, duration)) return MakeValue("duration", FormatDuration(duration));
  return MakeFault(kNoWireForm, "The fields of the script's duration are no counts of their units.");
}

ScriptResult ResultOfUrl(JSContextRef context, JSValueRef value) {
  UrlValue url;
  if (ReadUrlFields(context, value, url)) return MakeValue("url", FormatUrl(url));
  return MakeFault(kNoWireForm, "The fields of the script's link are no texts that it can carry.");
}

ScriptResult ResultOfObject(JSContextRef context, JSValueRef value, const DateReader& dates) {
  if (const TypedValue* typed = TypedValueOf(context, value))
    return MakeValue(typed->type->name, typed->text);
  if (JSValueIsDate(context, value)) return ResultOfDate(dates.TimeOf(context, value));
  if (IsDurationObject(context, value)) return ResultOfDuration(context, value);
  if (IsUrlObject(context, value)) return ResultOfUrl(context, value);
  const bool array = JSValueIsArray(context, value);
  return MakeFault(kNoWireForm, std::string("The script's value is an ") + (array ? "array" : "object") +
                                    ", which has no form in an answer.");
}

}  // namespace

ScriptResult ResultOfSingle(JSContextRef context, JSValueRef value, const DateReader& dates) {
  switch (JSValueGetType(context, value)) {
    case kJSTypeUndefined:
      return {};
    case kJSTypeNull:
      return {ResultKind::kNull, "", "", 0, ""};
    case kJSTypeBoolean:
      return MakeValue("boolean", JSValueToBoolean(context, value) ? "true" : "false");
    case kJSTypeNumber:
      return ResultOfNumber(JSValueToNumber(context, value, nullptr));
    case kJSTypeString:
      return ResultOfString(context, value);
    case kJSTypeBigInt:
      return ResultOfBigInt(context, value);
    case kJSTypeObject:
      return ResultOfObject(context, value, dates);
    case kJSTypeSymbol:
      break;
  }
  return MakeFault(kNoWireForm, "The script's value is a symbol, which has no form in an answer.");
}

}  // namespace qv::devservice

#include "devservice/js/value_objects.h"

#include <cmath>
#include <limits>

#include "devservice/js/handles.h"

namespace qv::devservice {
namespace {

JSValueRef DurationToString(JSContextRef context, JSObjectRef, JSObjectRef self, std::size_t,
                            const JSValueRef[], JSValueRef* exception) {
  Duration duration;
  if (ReadDurationFields(context, self, duration)) return MakeText(context, FormatDuration(duration));
  *exception = MakeError(context, "The fields of the object make no duration.");
  return JSValueMakeUndefined(context);
}

JSValueRef UrlToString(JSContextRef context, JSObjectRef, JSObjectRef self, std::size_t, const JSValueRef[],
                       JSValueRef* exception) {
  UrlValue url;
  if (ReadUrlFields(context, self, url)) return MakeText(context, url.link);
  *exception = MakeError(context, "The fields of the object make no link.");
  return JSValueMakeUndefined(context);
}

constexpr JSStaticFunction kDurationFunctions[] = {
    {"toString", DurationToString, kJSPropertyAttributeDontEnum}, {nullptr, nullptr, 0}};
constexpr JSStaticFunction kUrlFunctions[] = {{"toString", UrlToString, kJSPropertyAttributeDontEnum},
                                              {nullptr, nullptr, 0}};

JSClassRef DurationClass() {
  static JSClassRef shared = MakeClass("Duration", nullptr, nullptr, kDurationFunctions);
  return shared;
}

JSClassRef UrlClass() {
  static JSClassRef shared = MakeClass("Url", nullptr, nullptr, kUrlFunctions);
  return shared;
}

// The result of reading one field of a duration.
enum class FieldEnd { kMissing, kRead, kBad };

FieldEnd ReadNumber(JSContextRef context, JSObjectRef object, const char* name, double& number) {
  const JSValueRef value = GetProperty(context, object, name);
  if (!value) return FieldEnd::kBad;
  if (JSValueIsUndefined(context, value)) return FieldEnd::kMissing;
  if (!JSValueIsNumber(context, value)) return FieldEnd::kBad;
  number = JSValueToNumber(context, value, nullptr);
  return number >= 0 && std::isfinite(number) ? FieldEnd::kRead : FieldEnd::kBad;
}

FieldEnd ReadCount(JSContextRef context, JSObjectRef object, const char* name, int& count) {
  double number = 0;
  const FieldEnd end = ReadNumber(context, object, name, number);
  const bool whole = number <= std::numeric_limits<int>::max() && number == std::trunc(number);
  if (end == FieldEnd::kRead && !whole) return FieldEnd::kBad;
  count = whole ? static_cast<int>(number) : 0;
  return end;
}

FieldEnd ReadSign(JSContextRef context, JSObjectRef object, bool& negative) {
  const JSValueRef value = GetProperty(context, object, "negative");
  if (!value) return FieldEnd::kBad;
  if (JSValueIsUndefined(context, value)) return FieldEnd::kMissing;
  negative = JSValueToBoolean(context, value);
  return JSValueIsBoolean(context, value) ? FieldEnd::kRead : FieldEnd::kBad;
}

bool ReadUrlPart(JSContextRef context, JSValueRef value, std::string& part) {
  return value && JSValueIsString(context, value) && CarriableText(context, value, part, nullptr) &&
         IsUrlPart(part);
}

}  // namespace

JSValueRef MakeDurationObject(JSContextRef context, const Duration& duration) {
  JSObjectRef object = JSObjectMake(context, DurationClass(), nullptr);
  SetProperty(context, object, "negative", JSValueMakeBoolean(context, duration.negative));
  for (const DurationField& field : kDurationFields) {
    SetProperty(context, object, field.name, JSValueMakeNumber(context, duration.*field.count));
  }
  SetProperty(context, object, "seconds", JSValueMakeNumber(context, duration.seconds));
  return object;
}

bool IsDurationObject(JSContextRef context, JSValueRef value) {
  return JSValueIsObjectOfClass(context, value, DurationClass());
}

bool ReadDurationFields(JSContextRef context, JSValueRef value, Duration& result) {
  if (!JSValueIsObject(context, value)) return false;
  JSObjectRef object = JSValueToObject(context, value, nullptr);
  if (ReadSign(context, object, result.negative) == FieldEnd::kBad) return false;
  FieldEnd end = ReadNumber(context, object, "seconds", result.seconds);
  bool found = end == FieldEnd::kRead;
  for (const DurationField& field : kDurationFields) {
    if (end == FieldEnd::kBad) return false;
    end = ReadCount(context, object, field.name, result.*field.count);
    found = found || end == FieldEnd::kRead;
  }
  return found && end != FieldEnd::kBad;
}

JSValueRef MakeUrlObject(JSContextRef context, const UrlValue& url) {
  JSObjectRef object = JSObjectMake(context, UrlClass(), nullptr);
  SetProperty(context, object, "url", MakeText(context, url.link));
  SetProperty(context, object, "caption", MakeText(context, url.caption));
  return object;
}

bool IsUrlObject(JSContextRef context, JSValueRef value) {
  return JSValueIsObjectOfClass(context, value, UrlClass());
}

bool ReadUrlFields(JSContextRef context, JSValueRef value, UrlValue& result) {
  if (!JSValueIsObject(context, value)) return false;
  JSObjectRef object = JSValueToObject(context, value, nullptr);
  const JSValueRef link = GetProperty(context, object, "url");
  return ReadUrlParts(context, link, GetProperty(context, object, "caption"), result);
}

bool ReadUrlParts(JSContextRef context, JSValueRef link, JSValueRef caption, UrlValue& result) {
  if (!ReadUrlPart(context, link, result.link)) return false;
  if (caption && JSValueIsUndefined(context, caption)) {
    result.caption.clear();
    return true;
  }
  return ReadUrlPart(context, caption, result.caption);
}

}  // namespace qv::devservice

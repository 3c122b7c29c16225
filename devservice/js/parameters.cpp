#include "devservice/js/script_api.h"

#include "devservice/js/date_reader.h"
#include "devservice/js/file_objects.h"
#include "devservice/js/handles.h"
#include "devservice/js/value_objects.h"
#include "devservice/values/value_types.h"

namespace qv::devservice {
namespace {

constexpr double kSafeInteger = 9007199254740991.0;  // Number.MAX_SAFE_INTEGER

JSValueRef NumberFromLong(JSContextRef context, std::int64_t value) {
  const auto number = static_cast<double>(value);
  const bool safe = number >= -kSafeInteger && number <= kSafeInteger;
  return safe ? JSValueMakeNumber(context, number) : JSBigIntCreateWithInt64(context, value, nullptr);
}

// NormaliseText wrote the texts of the next three, so they are valid.
JSValueRef DateFromText(JSContextRef context, ValueKind kind, const std::string& text) {
  std::int64_t milliseconds = 0;
  ParseMoment(kind, text, milliseconds);
  return MakeDate(context, milliseconds);
}

JSValueRef DurationFromText(JSContextRef context, const std::string& text) {
  Duration duration;
  ParseDuration(text, duration);
  return MakeDurationObject(context, duration);
}

JSValueRef UrlFromText(JSContextRef context, const std::string& text) {
  UrlValue url;
  ParseUrl(text, url);
  return MakeUrlObject(context, url);
}

JSValueRef MakeParameterValue(JSContextRef context, const Parameter& parameter, const WorkerFiles& files) {
  const ReadableFile* file = parameter.type == kFileTicketType ? files.Find(parameter.text) : nullptr;
  if (file) return MakeFileObject(context, *file);
  const ValueType* type = FindValueType(parameter.type);
  switch (type ? type->kind : ValueKind::kString) {
    case ValueKind::kInteger:
      return NumberFromLong(context, ReadInteger(parameter.text));
    case ValueKind::kBoolean:
      return JSValueMakeBoolean(context, parameter.text == "true");
    case ValueKind::kFloat:
    case ValueKind::kDouble:
      return JSValueMakeNumber(context, ReadDouble(parameter.text));
    case ValueKind::kDate:
    case ValueKind::kTime:
    case ValueKind::kDateTime:
      return DateFromText(context, type->kind, parameter.text);
    case ValueKind::kDuration:
      return DurationFromText(context, parameter.text);
    case ValueKind::kUrl:
      return UrlFromText(context, parameter.text);
    case ValueKind::kString:
      break;
  }
  return MakeText(context, parameter.text);
}

// An object without a prototype, so that "__proto__" and "toString" are names like any other.
JSObjectRef MakeBareObject(JSContextRef context) {
  JSObjectRef object = JSObjectMake(context, nullptr, nullptr);
  JSObjectSetPrototype(context, object, JSValueMakeNull(context));
  return object;
}

}  // namespace

void InstallParameters(JSContextRef context, JSObjectRef global, const std::vector<Parameter>& parameters,
                       const WorkerFiles& files) {
  JSObjectRef values = MakeBareObject(context);
  JSObjectRef types = MakeBareObject(context);
  JSObjectRef list = JSObjectMakeArray(context, 0, nullptr, nullptr);
  SetProperty(context, global, "parameters", values);
  SetProperty(context, global, "parameterTypes", types);
  SetProperty(context, global, "parameterList", list);
  for (unsigned i = 0; i < parameters.size(); ++i) {
    const Parameter& parameter = parameters[i];
    const JSValueRef value = MakeParameterValue(context, parameter, files);
    const JSValueRef type = MakeText(context, parameter.type);
    SetProperty(context, values, parameter.name, value);
    SetProperty(context, types, parameter.name, type);
    JSObjectRef entry = JSObjectMake(context, nullptr, nullptr);
    JSObjectSetPropertyAtIndex(context, list, i, entry, nullptr);
    SetProperty(context, entry, "name", MakeText(context, parameter.name));
    SetProperty(context, entry, "type", type);
    SetProperty(context, entry, "value", value);
  }
}

}  // namespace qv::devservice

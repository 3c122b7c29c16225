#include "devservice/js_values.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "devservice/fault_codes.h"
#include "devservice/js_handles.h"
#include "devservice/text.h"
#include "devservice/value_types.h"

namespace qv::devservice {
namespace {

// What typed.int(5) and its kin return: an opaque object that carries type and text to the answer.
struct TypedValue {
  const ValueType* type;
  std::string text;
};

constexpr char kPrelude[] =
    "globalThis.ScriptError = class ScriptError extends Error {"
    "  constructor(code, description) {"
    "    super(description); this.name = 'ScriptError'; this.code = code; this.description = description;"
    "  }"
    "};";

constexpr double kSafeInteger = 9007199254740991.0;  // Number.MAX_SAFE_INTEGER
constexpr double kTwoTo63 = 9223372036854775808.0;

ScriptResult MakeFault(int code, const std::string& description, const std::string& source = "script") {
  return {ResultKind::kFault, "", MakeCarriable(description), code, source};
}

// ---- parameters ----

JSValueRef NumberFromLong(JSContextRef context, std::int64_t value) {
  const auto number = static_cast<double>(value);
  const bool safe = number >= -kSafeInteger && number <= kSafeInteger;
  return safe ? JSValueMakeNumber(context, number) : JSBigIntCreateWithInt64(context, value, nullptr);
}

JSValueRef MakeParameterValue(JSContextRef context, const Parameter& parameter) {
  const ValueType* type = FindValueType(parameter.type);
  switch (type ? type->kind : ValueKind::kString) {
    case ValueKind::kInteger:
      return NumberFromLong(context, ReadInteger(parameter.text));
    case ValueKind::kBoolean:
      return JSValueMakeBoolean(context, parameter.text == "true");
    case ValueKind::kFloat:
    case ValueKind::kDouble:
      return JSValueMakeNumber(context, ReadDouble(parameter.text));
    case ValueKind::kString:
      break;
  }
  return JSValueMakeString(context, MakeJsString(parameter.text).get());
}

// An object without a prototype, so that "__proto__" and "toString" are names like any other.
JSObjectRef MakeBareObject(JSContextRef context) {
  const JSObjectRef object = JSObjectMake(context, nullptr, nullptr);
  JSObjectSetPrototype(context, object, JSValueMakeNull(context));
  return object;
}

void InstallParameters(JSContextRef context, JSObjectRef global, const std::vector<Parameter>& parameters) {
  const JSObjectRef values = MakeBareObject(context);
  const JSObjectRef types = MakeBareObject(context);
  const JSObjectRef list = JSObjectMakeArray(context, 0, nullptr, nullptr);
  SetProperty(context, global, "parameters", values);
  SetProperty(context, global, "parameterTypes", types);
  SetProperty(context, global, "parameterList", list);
  for (unsigned i = 0; i < parameters.size(); ++i) {
    const Parameter& parameter = parameters[i];
    const JSValueRef value = MakeParameterValue(context, parameter);
    const JSValueRef type = JSValueMakeString(context, MakeJsString(parameter.type).get());
    SetProperty(context, values, parameter.name, value);
    SetProperty(context, types, parameter.name, type);
    const JSObjectRef entry = JSObjectMake(context, nullptr, nullptr);
    JSObjectSetPropertyAtIndex(context, list, i, entry, nullptr);
    SetProperty(context, entry, "name", JSValueMakeString(context, MakeJsString(parameter.name).get()));
    SetProperty(context, entry, "type", type);
    SetProperty(context, entry, "value", value);
  }
}

// ---- typed values ----

// Reads a number of either kind as a 64-bit integer; false when it is none or beyond the range.
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

bool WriteInteger(JSContextRef context, const ValueType& type, JSValueRef value, std::string& text) {
  std::int64_t number = 0;
  if (!IntegerOf(context, value, number)) return false;
  text = std::to_string(number);
  return number >= type.least && number <= type.greatest;
}

bool WriteFloat(JSContextRef context, JSValueRef value, std::string& text) {
  if (!JSValueIsNumber(context, value)) return false;
  const double number = JSValueToNumber(context, value, nullptr);
  // Beyond this the nearest float would be an infinity. Half a unit above the greatest float is the border.
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
  // The other legal spelling than that of a plain boolean, so that clients meet both.
  text = JSValueToBoolean(context, value) ? "1" : "0";
  return JSValueIsBoolean(context, value);
}

bool WriteString(JSContextRef context, JSValueRef value, std::string& text, JSValueRef* exception) {
  const std::optional<std::u16string> units = TextOfValue(context, value, exception);
  if (!units || FindForbiddenUnit(*units) != std::u16string::npos) return false;
  text = Utf16ToUtf8(*units);
  return true;
}

bool WriteTyped(JSContextRef context, const ValueType& type, JSValueRef value, std::string& text,
                JSValueRef* exception) {
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
      return WriteString(context, value, text, exception);
  }
  return false;
}

void DeleteTypedValue(JSObjectRef object) {
  delete static_cast<TypedValue*>(JSObjectGetPrivate(object));
}

JSClassRef TypedValueClass() {
  static const JSClassRef shared = [] {
    JSClassDefinition definition = kJSClassDefinitionEmpty;
    definition.className = "TypedValue";
    definition.finalize = DeleteTypedValue;
    return JSClassCreate(&definition);
  }();
  return shared;
}

JSValueRef MakeError(JSContextRef context, const std::string& message) {
  const JSValueRef text = JSValueMakeString(context, MakeJsString(message).get());
  return JSObjectMakeError(context, 1, &text, nullptr);
}

std::string DescribeRange(const ValueType& type) {
  if (type.kind != ValueKind::kInteger) return ".";
  return " (" + std::to_string(type.least) + " to " + std::to_string(type.greatest) + ").";
}

// The body of typed.int and its kin; the function object's private data is the row of its type.
JSValueRef CallTyped(JSContextRef context, JSObjectRef function, JSObjectRef, std::size_t count,
                     const JSValueRef arguments[], JSValueRef* exception) {
  const auto* type = static_cast<const ValueType*>(JSObjectGetPrivate(function));
  const std::string call = std::string("typed.") + type->name;
  if (count != 1) {
    *exception = MakeError(context, call + " takes one value.");
    return JSValueMakeUndefined(context);
  }
  auto value = std::make_unique<TypedValue>(TypedValue{type, ""});
  if (!WriteTyped(context, *type, arguments[0], value->text, exception)) {
    if (!*exception)
      *exception = MakeError(context, call + ": the value is none of this type" + DescribeRange(*type));
    return JSValueMakeUndefined(context);
  }
  return JSObjectMake(context, TypedValueClass(), value.release());
}

JSClassRef ConverterClass() {
  static const JSClassRef shared = [] {
    JSClassDefinition definition = kJSClassDefinitionEmpty;
    definition.className = "TypedConverter";
    definition.callAsFunction = CallTyped;
    return JSClassCreate(&definition);
  }();
  return shared;
}

void InstallTyped(JSContextRef context, JSObjectRef global) {
  const JSObjectRef typed = JSObjectMake(context, nullptr, nullptr);
  SetProperty(context, global, "typed", typed);
  for (const ValueType* type = BeginValueTypes(); type != EndValueTypes(); ++type) {
    // Only the callback above reads the row, and it does not write.
    SetProperty(context, typed, type->name,
                JSObjectMake(context, ConverterClass(), const_cast<ValueType*>(type)));
  }
}

// ---- answers ----

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

ScriptResult ResultOfObject(JSContextRef context, JSValueRef value) {
  if (JSValueIsObjectOfClass(context, value, TypedValueClass())) {
    const JSObjectRef object = JSValueToObject(context, value, nullptr);
    const auto* typed = static_cast<const TypedValue*>(JSObjectGetPrivate(object));
    if (typed) return MakeValue(typed->type->name, typed->text);
  }
  const bool array = JSValueIsArray(context, value);
  return MakeFault(kNoWireForm, std::string("The script's value is an ") + (array ? "array" : "object") +
                                    ", which has no form in an answer.");
}

// ---- thrown values ----

// A number that the field of an error object can hold.
bool IsErrorCode(double number) {
  return number >= -2147483648.0 && number <= 2147483647.0 && number == std::trunc(number);
}

void TakeCode(JSContextRef context, JSObjectRef thrown, ScriptResult& fault) {
  const JSValueRef code = GetProperty(context, thrown, "code");
  if (!code || !JSValueIsNumber(context, code)) return;
  const double number = JSValueToNumber(context, code, nullptr);
  if (IsErrorCode(number)) fault.code = static_cast<int>(number);
}

void TakeDescription(JSContextRef context, JSObjectRef thrown, ScriptResult& fault) {
  for (const char* name : {"description", "message"}) {
    const JSValueRef text = GetProperty(context, thrown, name);
    if (!text || !JSValueIsString(context, text)) continue;
    fault.text = MakeCarriable(Utf16ToUtf8(TextOfValue(context, text, nullptr).value_or(u"")));
    return;
  }
}

void TakePlace(JSContextRef context, JSObjectRef thrown, ScriptResult& fault) {
  const JSValueRef line = GetProperty(context, thrown, "line");
  if (!line || !JSValueIsNumber(context, line)) return;
  const double number = JSValueToNumber(context, line, nullptr);
  if (IsErrorCode(number)) fault.source = "script, line " + std::to_string(static_cast<int>(number));
}

}  // namespace

void InstallScriptApi(JSGlobalContextRef context, const ScriptJob& job) {
  const JSObjectRef global = JSContextGetGlobalObject(context);
  InstallParameters(context, global, job.parameters);
  InstallTyped(context, global);
  JSEvaluateScript(context, MakeJsString(kPrelude).get(), nullptr, nullptr, 1, nullptr);
}

ScriptResult ResultOfValue(JSContextRef context, JSValueRef value) {
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
      return ResultOfObject(context, value);
    case kJSTypeSymbol:
      break;
  }
  return MakeFault(kNoWireForm, "The script's value is a symbol, which has no form in an answer.");
}

ScriptResult ResultOfException(JSContextRef context, JSValueRef exception) {
  ScriptResult fault = MakeFault(kScriptThrew, "The script threw a value without a description.");
  if (JSValueIsObject(context, exception)) {
    const JSObjectRef thrown = JSValueToObject(context, exception, nullptr);
    TakeDescription(context, thrown, fault);
    TakePlace(context, thrown, fault);
    TakeCode(context, thrown, fault);
  } else if (const auto text = TextOfValue(context, exception, nullptr)) {
    fault.text = MakeCarriable(Utf16ToUtf8(*text));
  }
  return fault;
}

}  // namespace qv::devservice

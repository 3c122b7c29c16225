#include "devservice/js_values.h"

#include <cmath>

#include "devservice/date_text.h"
#include "devservice/fault_codes.h"
#include "devservice/js_console.h"
#include "devservice/js_handles.h"
#include "devservice/js_inferred_table.h"
#include "devservice/js_objects.h"
#include "devservice/js_parameters.h"
#include "devservice/js_place.h"
#include "devservice/js_publish.h"
#include "devservice/js_table.h"
#include "devservice/js_typed.h"
#include "devservice/text.h"

namespace qv::devservice {
namespace {

constexpr char kPrelude[] =
    "globalThis.ScriptError = class ScriptError extends Error {"
    "  constructor(code, description) {"
    "    super(description); this.name = 'ScriptError'; this.code = code; this.description = description;"
    "  }"
    "};";

ScriptResult MakeFault(int code, const std::string& description, const std::string& source = "script") {
  return {ResultKind::kFault, "", MakeCarriable(description), code, source};
}

// ---- answers ----

ScriptResult MakeValue(const char* type, std::string text) {
  return {ResultKind::kValue, type, std::move(text), 0, ""};
}

ScriptResult MakeTableResult(const Table& table) {
  ScriptResult result;
  result.kind = ResultKind::kTable;
  result.table = table;
  return result;
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

constexpr char kArrayWithoutForm[] =
    "The script's value is an array, which has no form in an answer; a table of other rows than plain "
    "objects, or of none, is a typed.table.";

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

// Leaves the text alone unless the property is one.
bool TakeText(JSContextRef context, JSObjectRef thrown, const char* name, ScriptResult& fault) {
  const JSValueRef text = GetProperty(context, thrown, name);
  if (!text || !JSValueIsString(context, text)) return false;
  fault.text = MakeCarriable(Utf16ToUtf8(TextOfValue(context, text, nullptr).value_or(u"")));
  return true;
}

// A description is worded by the script for whoever called it. All other texts are for the script's author,
// who wants to know the line.
void TakeDescription(JSContextRef context, JSObjectRef thrown, ScriptResult& fault) {
  const std::optional<int> line = LineOfError(context, thrown);
  if (line) fault.source = "script, line " + std::to_string(*line);
  if (TakeText(context, thrown, "description", fault)) return;
  TakeText(context, thrown, "message", fault);
  if (line) fault.text = WithLine(fault.text, *line);
}

}  // namespace

void InstallScriptApi(JSGlobalContextRef context, const ScriptJob& job, const ValueReaders& readers,
                      const std::shared_ptr<WorkerFiles>& files,
                      const std::shared_ptr<ConsoleLimit>& console) {
  const JSObjectRef global = JSContextGetGlobalObject(context);
  InstallParameters(context, global, job.parameters, *files);
  InstallTable(context, InstallTyped(context, global, readers.dates), readers);
  InstallPublish(context, global, files);
  InstallConsole(context, global, console);
  JSEvaluateScript(context, MakeJsString(kPrelude).get(), nullptr, nullptr, 1, nullptr);
}

ScriptResult ResultOfValue(JSContextRef context, JSValueRef value, const ValueReaders& readers) {
  if (const Table* table = TableOf(context, value)) return MakeTableResult(*table);
  if (JSValueIsArray(context, value)) {
    auto rows = ResultOfRows(context, JSValueToObject(context, value, nullptr), readers);
    if (rows) return *std::move(rows);
    return MakeFault(kNoWireForm, kArrayWithoutForm);
  }
  return ResultOfSingle(context, value, readers.dates);
}

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

ScriptResult ResultOfException(JSContextRef context, JSValueRef exception) {
  ScriptResult fault = MakeFault(kScriptThrew, "The script threw a value without a description.");
  if (JSValueIsObject(context, exception)) {
    const JSObjectRef thrown = JSValueToObject(context, exception, nullptr);
    TakeDescription(context, thrown, fault);
    TakeCode(context, thrown, fault);
  } else if (const auto text = TextOfValue(context, exception, nullptr)) {
    fault.text = MakeCarriable(Utf16ToUtf8(*text));
  }
  return fault;
}

}  // namespace qv::devservice

#include "devservice/js/script_fault.h"

#include <cmath>
#include <optional>

#include "devservice/js/error_place.h"
#include "devservice/js/handles.h"
#include "devservice/values/fault_codes.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

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

// Changes nothing unless the property is a text.
bool TakeText(JSContextRef context, JSObjectRef thrown, const char* name, ScriptResult& fault) {
  const JSValueRef text = GetProperty(context, thrown, name);
  if (!text || !JSValueIsString(context, text)) return false;
  fault.text = MakeCarriable(Utf16ToUtf8(TextOfValue(context, text, nullptr).value_or(u"")));
  return true;
}

// A description is the script's own message for its caller. All other texts are for the script's author, who
// wants to know the line.
void TakeDescription(JSContextRef context, JSObjectRef thrown, ScriptResult& fault) {
  const std::optional<int> line = LineOfError(context, thrown);
  if (line) fault.source = "script, line " + std::to_string(*line);
  if (TakeText(context, thrown, "description", fault)) return;
  TakeText(context, thrown, "message", fault);
  if (line) fault.text = WithLine(fault.text, *line);
}

}  // namespace

ScriptResult MakeFault(int code, const std::string& description) {
  return {ResultKind::kFault, "", MakeCarriable(description), code, "script"};
}

ScriptResult ResultOfException(JSContextRef context, JSValueRef exception) {
  ScriptResult fault = MakeFault(kScriptThrew, "The script threw a value without a description.");
  if (JSValueIsObject(context, exception)) {
    JSObjectRef thrown = JSValueToObject(context, exception, nullptr);
    TakeDescription(context, thrown, fault);
    TakeCode(context, thrown, fault);
  } else if (const auto text = TextOfValue(context, exception, nullptr)) {
    fault.text = MakeCarriable(Utf16ToUtf8(*text));
  }
  return fault;
}

}  // namespace qv::devservice

#include "devservice/js/script_api.h"

#include <algorithm>
#include <optional>

#include "devservice/js/error_place.h"
#include "devservice/js/handles.h"
#include "devservice/js/typed_values.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

// The private data of a function.
struct Function {
  std::shared_ptr<ConsoleLimit> console;
  const char* level;
};

constexpr const char* kLevels[] = {"log", "info", "warn", "error", "debug"};

// The beginning of a text, as much as a message can hold.
std::string Beginning(JSStringRef text) {
  const auto* units = reinterpret_cast<const char16_t*>(JSStringGetCharactersPtr(text));
  return Utf16ToUtf8({units, std::min(JSStringGetLength(text), kLongestConsoleText + 1)});
}

std::optional<std::string> TextOf(JSContextRef context, JSValueRef value) {
  const JsString text(JSValueToStringCopy(context, value, nullptr));
  if (!text) return std::nullopt;
  return Beginning(text.get());
}

std::optional<std::string> JsonOf(JSContextRef context, JSValueRef value) {
  const JsString text(JSValueCreateJSONString(context, value, 0, nullptr));
  if (!text) return std::nullopt;
  return Beginning(text.get());
}

std::string TextOfSymbol(JSContextRef context, JSValueRef value) {
  JSObjectRef object = JSValueToObject(context, value, nullptr);
  const JSValueRef description = object ? GetProperty(context, object, "description") : nullptr;
  const bool described = description && JSValueIsString(context, description);
  return "Symbol(" + (described ? TextOf(context, description).value_or("") : "") + ")";
}

// Errors have their line added; objects without a text of their class are shown as JSON.
std::string TextOfObject(JSContextRef context, JSValueRef value) {
  if (const TypedValue* typed = TypedValueOf(context, value)) return typed->text;
  JSObjectRef object = JSValueToObject(context, value, nullptr);
  const std::optional<std::string> text = TextOf(context, value);
  if (JSValueIsArray(context, value) || !text || *text == "[object Object]")
    return JsonOf(context, value).value_or(text.value_or("(an object without a text)"));
  const JSValueRef stack = GetProperty(context, object, "stack");
  const bool isError = stack && JSValueIsString(context, stack);
  const std::optional<int> line = isError ? LineOfError(context, object) : std::nullopt;
  return line ? WithLine(*text, *line) : *text;
}

std::string Describe(JSContextRef context, JSValueRef value) {
  if (JSValueIsObject(context, value)) return TextOfObject(context, value);
  if (JSValueIsSymbol(context, value)) return TextOfSymbol(context, value);
  return TextOf(context, value).value_or("");
}

JSValueRef CallFunction(JSContextRef context, JSObjectRef function, JSObjectRef, std::size_t count,
                        const JSValueRef values[], JSValueRef*) {
  const auto& called = *static_cast<const Function*>(JSObjectGetPrivate(function));
  std::string text;
  for (std::size_t i = 0; i < count && text.size() <= kLongestConsoleText; ++i)
    text += (i > 0 ? " " : "") + Describe(context, values[i]);
  called.console->Pass({called.level, std::move(text)});
  return JSValueMakeUndefined(context);
}

JSClassRef FunctionClass() {
  static JSClassRef shared = MakeClass("ConsoleFunction", CallFunction, DeletePrivate<Function>);
  return shared;
}

}  // namespace

void InstallConsole(JSContextRef context, JSObjectRef global, const std::shared_ptr<ConsoleLimit>& console) {
  const JSValueRef value = GetProperty(context, global, "console");
  if (!value || !JSValueIsObject(context, value)) return;
  JSObjectRef object = JSValueToObject(context, value, nullptr);
  for (const char* level : kLevels)
    SetProperty(context, object, level, JSObjectMake(context, FunctionClass(), new Function{console, level}));
}

}  // namespace qv::devservice

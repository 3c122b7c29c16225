#include "devservice/js/handles.h"

#include "devservice/values/text.h"

namespace qv::devservice {

static_assert(sizeof(JSChar) == sizeof(char16_t), "the engine's strings are UTF-16");

JsString MakeJsString(std::string_view utf8) {
  std::u16string units;
  if (!Utf8ToUtf16(utf8, units)) units.clear();
  return JsString(JSStringCreateWithCharacters(reinterpret_cast<const JSChar*>(units.data()), units.size()));
}

std::u16string UnitsOf(JSStringRef text) {
  const JSChar* units = JSStringGetCharactersPtr(text);
  return std::u16string(reinterpret_cast<const char16_t*>(units), JSStringGetLength(text));
}

std::optional<std::u16string> TextOfValue(JSContextRef context, JSValueRef value, JSValueRef* exception) {
  const JsString text(JSValueToStringCopy(context, value, exception));
  if (!text) return std::nullopt;
  return UnitsOf(text.get());
}

bool CarriableText(JSContextRef context, JSValueRef value, std::string& text, JSValueRef* exception) {
  const std::optional<std::u16string> units = TextOfValue(context, value, exception);
  if (!units || FindForbiddenUnit(*units) != std::u16string::npos) return false;
  text = Utf16ToUtf8(*units);
  return true;
}

JSValueRef MakeText(JSContextRef context, std::string_view utf8) {
  return JSValueMakeString(context, MakeJsString(utf8).get());
}

JSValueRef MakeError(JSContextRef context, std::string_view message) {
  const JSValueRef text = MakeText(context, message);
  return JSObjectMakeError(context, 1, &text, nullptr);
}

JSValueRef GetProperty(JSContextRef context, JSObjectRef object, const char* name) {
  JSValueRef exception = nullptr;
  const JSValueRef value = JSObjectGetProperty(context, object, MakeJsString(name).get(), &exception);
  return exception ? nullptr : value;
}

void SetProperty(JSContextRef context, JSObjectRef object, std::string_view name, JSValueRef value) {
  JSObjectSetProperty(context, object, MakeJsString(name).get(), value, kJSPropertyAttributeNone, nullptr);
}

JSClassRef MakeClass(const char* name, JSObjectCallAsFunctionCallback call, JSObjectFinalizeCallback free,
                     const JSStaticFunction* methods) {
  JSClassDefinition definition = kJSClassDefinitionEmpty;
  definition.className = name;
  definition.callAsFunction = call;
  definition.finalize = free;
  definition.staticFunctions = methods;
  return JSClassCreate(&definition);
}

}  // namespace qv::devservice

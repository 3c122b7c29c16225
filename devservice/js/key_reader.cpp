#include "devservice/js/key_reader.h"

namespace qv::devservice {
namespace {

constexpr char kKeysFunction[] =
    "(keys => (object, previous) => {"
    "  const list = keys(object);"
    "  if (previous === null || list.length !== previous.length) return list;"
    "  for (let i = 0; i < list.length; ++i) if (list[i] !== previous[i]) return list;"
    "  return previous;"
    "})(Object.keys)";

}  // namespace

KeyReader::KeyReader(JSContextGroupRef group) : clean_(JSGlobalContextCreateInGroup(group, nullptr)) {
  const JSValueRef function =
      JSEvaluateScript(clean_.get(), MakeJsString(kKeysFunction).get(), nullptr, nullptr, 1, nullptr);
  keys_ = JSValueToObject(clean_.get(), function, nullptr);
  error_ = JSValueToObject(
      clean_.get(), GetProperty(clean_.get(), JSContextGetGlobalObject(clean_.get()), "Error"), nullptr);
  JSValueProtect(clean_.get(), keys_);
  JSValueProtect(clean_.get(), error_);
}

JSObjectRef KeyReader::KeysOf(JSContextRef context, JSObjectRef object, JSObjectRef previous,
                              JSValueRef* exception) const {
  const JSValueRef arguments[] = {object, previous ? previous : JSValueMakeNull(clean_.get())};
  const JSValueRef list = JSObjectCallAsFunction(clean_.get(), keys_, nullptr, 2, arguments, exception);
  if (list) return JSValueToObject(clean_.get(), list, nullptr);
  // An error of the clean global object would give a script access to it.
  if (JSValueIsInstanceOfConstructor(clean_.get(), *exception, error_, nullptr))
    *exception = MakeError(context, "The keys of an object cannot be read.");
  return nullptr;
}

}  // namespace qv::devservice

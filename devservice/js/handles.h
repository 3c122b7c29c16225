// Owners of the engine's handles, and the operations on values that all users of the engine need.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qv::devservice {

struct JsStringDeleter {
  void operator()(JSStringRef text) const { JSStringRelease(text); }
};
using JsString = std::unique_ptr<OpaqueJSString, JsStringDeleter>;

struct JsContextDeleter {
  void operator()(JSGlobalContextRef context) const { JSGlobalContextRelease(context); }
};
// JSGlobalContextRef is the mutable form of JSContextRef, so the pointee is not const.
using JsContext = std::unique_ptr<OpaqueJSContext, JsContextDeleter>;

// From UTF-8; malformed bytes give an empty text.
JsString MakeJsString(std::string_view utf8);

// The units of an engine string.
std::u16string UnitsOf(JSStringRef text);

// Like String(value), which may run code of the script; nothing when that throws (`exception`, unless null,
// is the thrown value).
std::optional<std::u16string> TextOfValue(JSContextRef context, JSValueRef value, JSValueRef* exception);

// The same as UTF-8; false when String(value) throws or the text holds characters that XML cannot carry.
bool CarriableText(JSContextRef context, JSValueRef value, std::string& text, JSValueRef* exception);

// A String value, and an Error to be thrown.
JSValueRef MakeText(JSContextRef context, std::string_view utf8);
JSValueRef MakeError(JSContextRef context, std::string_view message);

// Value of a property, or null when reading it throws.
JSValueRef GetProperty(JSContextRef context, JSObjectRef object, const char* name);

// Sets an ordinary property. If that fails the engine is out of memory, which the next evaluation reports.
void SetProperty(JSContextRef context, JSObjectRef object, std::string_view name, JSValueRef value);

// A class of objects: with a function that runs when such an object is called, one that frees its private
// data, and methods, each null without one.
JSClassRef MakeClass(const char* name, JSObjectCallAsFunctionCallback call, JSObjectFinalizeCallback free,
                     const JSStaticFunction* methods = nullptr);

// Frees private data of the type T.
template <typename T>
void DeletePrivate(JSObjectRef object) {
  delete static_cast<T*>(JSObjectGetPrivate(object));
}

// The private data of the value when it is an object of the class, else null.
template <typename T>
const T* PrivateOf(JSContextRef context, JSValueRef value, JSClassRef objectClass) {
  if (!JSValueIsObjectOfClass(context, value, objectClass)) return nullptr;
  return static_cast<const T*>(JSObjectGetPrivate(JSValueToObject(context, value, nullptr)));
}

}  // namespace qv::devservice

#include "devservice/js/script_api.h"

#include <algorithm>

#include "devservice/js/file_objects.h"
#include "devservice/js/handles.h"
#include "devservice/values/fault_codes.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

// The arguments of one call.
struct Arguments {
  JSContextRef context;
  std::size_t count;
  const JSValueRef* values;
};

using Action = std::string (*)(WorkerFiles& files, const Arguments& arguments);

// The private data of a function.
struct Function {
  std::shared_ptr<WorkerFiles> files;
  Action action;
};

[[noreturn]] void Refuse(const std::string& words) {
  throw FaultError(kScriptThrew, words, "script");
}

// A String of the script as UTF-8; lone surrogates become U+FFFD.
std::string Utf8Of(JSContextRef context, JSValueRef value) {
  return Utf16ToUtf8(TextOfValue(context, value, nullptr).value_or(u""));
}

std::string AnswerUploadUrl(WorkerFiles& files, const Arguments& arguments) {
  if (arguments.count == 0) return files.NewUploadUrl();
  if (arguments.count != 1 || !JSValueIsString(arguments.context, arguments.values[0]))
    Refuse("uploadUrl takes nothing, or a ticket, which is a text.");
  return files.UploadUrl(Utf8Of(arguments.context, arguments.values[0]));
}

// How many units of UTF-16 the text has.
std::size_t CountUnits(std::string_view utf8) {
  std::size_t count = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    count += ((byte & 0xC0) != 0x80) + (byte >= 0xF0);
  }
  return count;
}

// Directly from the engine to UTF-8, since the text may be large. The engine stops at a lone surrogate; the
// slower way makes that U+FFFD.
std::string PublishText(WorkerFiles& files, const std::string& name, JSContextRef context, JSValueRef value) {
  const JsString text(JSValueToStringCopy(context, value, nullptr));
  if (!text || JSStringGetLength(text.get()) > kLargestContent) Refuse("The content is larger than 64 MiB.");
  const std::size_t most = JSStringGetMaximumUTF8CStringSize(text.get());
  const std::unique_ptr<char[]> bytes(new char[most]);
  const std::size_t written =
      JSStringGetUTF8CString(text.get(), bytes.get(), most);  // With the null terminator.
  const std::string_view utf8(bytes.get(), written - std::min<std::size_t>(written, 1));
  if (CountUnits(utf8) == JSStringGetLength(text.get())) return files.Publish(name, utf8);
  return files.Publish(name, Utf16ToUtf8(UnitsOf(text.get())));
}

std::string PublishBuffer(WorkerFiles& files, const std::string& name, JSContextRef context,
                          JSObjectRef buffer) {
  const void* bytes = JSObjectGetArrayBufferBytesPtr(context, buffer, nullptr);
  const std::size_t count = bytes ? JSObjectGetArrayBufferByteLength(context, buffer, nullptr) : 0;
  return files.Publish(name, {static_cast<const char*>(bytes), count});
}

std::string PublishView(WorkerFiles& files, const std::string& name, JSContextRef context, JSObjectRef view) {
  const void* bytes = JSObjectGetTypedArrayBytesPtr(context, view, nullptr);
  const std::size_t offset = JSObjectGetTypedArrayByteOffset(context, view, nullptr);
  const std::size_t count = bytes ? JSObjectGetTypedArrayByteLength(context, view, nullptr) : 0;
  return files.Publish(name, {static_cast<const char*>(bytes) + (count > 0 ? offset : 0), count});
}

std::string PublishContent(WorkerFiles& files, const std::string& name, JSContextRef context,
                           JSValueRef content) {
  if (JSValueIsString(context, content)) return PublishText(files, name, context, content);
  if (const ReadableFile* file = FileOfObject(context, content))
    return files.PublishUpload(name, file->ticket);
  const JSTypedArrayType type = JSValueGetTypedArrayType(context, content, nullptr);
  if (type == kJSTypedArrayTypeArrayBuffer)
    return PublishBuffer(files, name, context, JSValueToObject(context, content, nullptr));
  if (type == kJSTypedArrayTypeUint8Array || type == kJSTypedArrayTypeUint8ClampedArray)
    return PublishView(files, name, context, JSValueToObject(context, content, nullptr));
  Refuse("publish takes a text, a Uint8Array, an ArrayBuffer or a file as content.");
}

std::string AnswerPublish(WorkerFiles& files, const Arguments& arguments) {
  const JSContextRef context = arguments.context;
  if (arguments.count != 2 || !JSValueIsString(context, arguments.values[0]))
    Refuse("publish takes a name, which is a text, and a content.");
  std::string name;
  if (!CarriableText(context, arguments.values[0], name, nullptr)) name.clear();
  return PublishContent(files, name, context, arguments.values[1]);
}

JSValueRef CallFunction(JSContextRef context, JSObjectRef function, JSObjectRef, std::size_t count,
                        const JSValueRef values[], JSValueRef* exception) {
  const auto& called = *static_cast<const Function*>(JSObjectGetPrivate(function));
  try {
    return MakeText(context, called.action(*called.files, {context, count, values}));
  } catch (const FaultError& error) {
    ThrowInScript(context, error, exception);
  }
  return JSValueMakeUndefined(context);
}

JSClassRef FunctionClass() {
  static JSClassRef shared = MakeClass("FileFunction", CallFunction, DeletePrivate<Function>);
  return shared;
}

}  // namespace

void InstallPublish(JSContextRef context, JSObjectRef global, const std::shared_ptr<WorkerFiles>& files) {
  SetProperty(context, global, "uploadUrl",
              JSObjectMake(context, FunctionClass(), new Function{files, AnswerUploadUrl}));
  SetProperty(context, global, "publish",
              JSObjectMake(context, FunctionClass(), new Function{files, AnswerPublish}));
}

}  // namespace qv::devservice

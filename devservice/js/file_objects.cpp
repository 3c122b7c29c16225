#include "devservice/js/file_objects.h"

#include <algorithm>
#include <cstdlib>

#include "devservice/files/worker_files.h"
#include "devservice/js/handles.h"
#include "devservice/values/fault_codes.h"
#include "devservice/values/text.h"
#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

constexpr JSPropertyAttributes kFixed = kJSPropertyAttributeReadOnly | kJSPropertyAttributeDontDelete;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The file of `self`, which can be any object.
const ReadableFile& FileOfSelf(JSContextRef context, JSObjectRef self) {
  const ReadableFile* file = FileOfObject(context, self);
  if (!file) throw FaultError(kScriptThrew, "This is a function of file objects.", "script");
  return *file;
}

// Every copy is released before the next is made: the engine's text has two bytes for each unit, and the
// engine copies it once more for its value.
std::u16string UnitsOfFile(const ReadableFile& file) {
  const std::string bytes = WorkerFiles::Read(file);
  std::string_view text = bytes;
  if (StartsWith(text, kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  std::u16string units;
  if (!Utf8ToUtf16(text, units)) throw FaultError(kScriptThrew, "The file is no text in UTF-8.", "script");
  return units;
}

JsString TextOfFile(const ReadableFile& file) {
  const std::u16string units = UnitsOfFile(file);
  return JsString(JSStringCreateWithCharacters(reinterpret_cast<const JSChar*>(units.data()), units.size()));
}

void FreeBytes(void* bytes, void*) {
  std::free(bytes);
}

JSValueRef BytesOfFile(JSContextRef context, const ReadableFile& file, JSValueRef* exception) {
  const std::string bytes = WorkerFiles::Read(file);
  if (bytes.empty()) return JSObjectMakeTypedArray(context, kJSTypedArrayTypeUint8Array, 0, exception);
  void* copy = std::malloc(bytes.size());
  if (!copy) throw FaultError(kScriptThrew, "There is no memory for the file.", "script");
  std::copy(bytes.begin(), bytes.end(), static_cast<char*>(copy));
  return JSObjectMakeTypedArrayWithBytesNoCopy(context, kJSTypedArrayTypeUint8Array, copy, bytes.size(),
                                               FreeBytes, nullptr, exception);
}

JSValueRef CallText(JSContextRef context, JSObjectRef, JSObjectRef self, std::size_t, const JSValueRef[],
                    JSValueRef* exception) {
  try {
    return JSValueMakeString(context, TextOfFile(FileOfSelf(context, self)).get());
  } catch (const FaultError& error) {
    ThrowInScript(context, error, exception);
  }
  return JSValueMakeUndefined(context);
}

JSValueRef CallBytes(JSContextRef context, JSObjectRef, JSObjectRef self, std::size_t, const JSValueRef[],
                     JSValueRef* exception) {
  try {
    return BytesOfFile(context, FileOfSelf(context, self), exception);
  } catch (const FaultError& error) {
    ThrowInScript(context, error, exception);
  }
  return JSValueMakeUndefined(context);
}

constexpr JSStaticFunction kFileFunctions[] = {{"text", CallText, kFixed | kJSPropertyAttributeDontEnum},
                                               {"bytes", CallBytes, kFixed | kJSPropertyAttributeDontEnum},
                                               {nullptr, nullptr, 0}};

JSClassRef FileClass() {
  static JSClassRef shared = MakeClass("File", nullptr, DeletePrivate<ReadableFile>, kFileFunctions);
  return shared;
}

void SetFixed(JSContextRef context, JSObjectRef object, const char* name, JSValueRef value) {
  JSObjectSetProperty(context, object, MakeJsString(name).get(), value, kFixed, nullptr);
}

}  // namespace

JSValueRef MakeFileObject(JSContextRef context, const ReadableFile& file) {
  JSObjectRef object = JSObjectMake(context, FileClass(), new ReadableFile(file));
  SetFixed(context, object, "ticket", MakeText(context, file.ticket));
  SetFixed(context, object, "size", JSValueMakeNumber(context, static_cast<double>(file.size)));
  return object;
}

const ReadableFile* FileOfObject(JSContextRef context, JSValueRef value) {
  return PrivateOf<ReadableFile>(context, value, FileClass());
}

void ThrowInScript(JSContextRef context, const FaultError& error, JSValueRef* exception) {
  const JSValueRef thrown = MakeError(context, error.what());
  JSObjectRef object = JSValueToObject(context, thrown, nullptr);
  SetProperty(context, object, "name", MakeText(context, "ScriptError"));
  SetProperty(context, object, "code", JSValueMakeNumber(context, error.Code()));
  *exception = thrown;
}

}  // namespace qv::devservice

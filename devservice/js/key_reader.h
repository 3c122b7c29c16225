// The keys of a script's objects.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/js/date_reader.h"
#include "devservice/js/handles.h"

namespace qv::devservice {

// Lists keys with a function of a separate global object that no script can reach, since a script may change
// its own Object.
class KeyReader {
 public:
  // Keeps the group alive.
  explicit KeyReader(JSContextGroupRef group);

  // An array of the object's own enumerable string keys, in the order of the language. `previous` is null or
  // such an array, and is returned if its keys are the same. Null when a proxy has thrown (`exception` is the
  // value). `context` belongs to the group.
  JSObjectRef KeysOf(JSContextRef context, JSObjectRef object, JSObjectRef previous,
                     JSValueRef* exception) const;

 private:
  JsContext clean_;
  // These live in the clean context.
  JSObjectRef keys_;
  JSObjectRef error_;
};

// Readers of values that a script cannot influence. One for all scripts of an engine.
struct ValueReaders {
  explicit ValueReaders(JSContextGroupRef group) : dates(group), keys(group) {}
  DateReader dates;
  KeyReader keys;
};

}  // namespace qv::devservice

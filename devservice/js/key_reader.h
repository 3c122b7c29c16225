// The keys of a script's objects.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/js/date_reader.h"
#include "devservice/js/handles.h"

namespace qv::devservice {

// Lists keys through a function of a global object of its own, which no script can reach: a script may change
// its Object as it likes.
class KeyReader {
 public:
  // Keeps the group alive.
  explicit KeyReader(JSContextGroupRef group);

  // An array of the object's own enumerable keys that are texts, in the order of the language: `previous`
  // itself when its keys are the same. `previous` is null or such an array. Null when a proxy has thrown (the
  // value is left in `exception`). `context` belongs to the group.
  JSObjectRef KeysOf(JSContextRef context, JSObjectRef object, JSObjectRef previous,
                     JSValueRef* exception) const;

 private:
  JsContext clean_;
  // These live in the clean context.
  JSObjectRef keys_;
  JSObjectRef error_;
};

// What reads values in ways that a script cannot change. One for all scripts of an engine.
struct ValueReaders {
  explicit ValueReaders(JSContextGroupRef group) : dates(group), keys(group) {}
  DateReader dates;
  KeyReader keys;
};

}  // namespace qv::devservice

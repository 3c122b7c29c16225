// Dates of scripts.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstdint>

#include "devservice/js/handles.h"

namespace qv::devservice {

// A Date of the script at this moment, in milliseconds since 1970 in UTC.
JSValueRef MakeDate(JSContextRef context, std::int64_t milliseconds);

// Reads Dates with a function of a separate global object that no script can reach, since a script may change
// its own Date.prototype.
class DateReader {
 public:
  // Keeps the group alive.
  explicit DateReader(JSContextGroupRef group);
  // Milliseconds since 1970 in UTC; NaN for an invalid Date and for a value that is not a Date. `context`
  // belongs to the group.
  double TimeOf(JSContextRef context, JSValueRef value) const;

 private:
  JsContext clean_;
  JSObjectRef getTime_;  // Lives in the clean context.
};

}  // namespace qv::devservice

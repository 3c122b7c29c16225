// `typed`: values with a type that the script chooses.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <string>

#include "devservice/js_dates.h"
#include "devservice/value_types.h"

namespace qv::devservice {

// What typed.int(5) and its kin return: an opaque object that carries type and text to the answer.
struct TypedValue {
  const ValueType* type;
  std::string text;
};

// Puts `typed` into a global object. The reader is borrowed and has to outlive the context.
void InstallTyped(JSContextRef context, JSObjectRef global, const DateReader& dates);

// What the value carries when it is one of these objects, else null. Lives as long as the value.
const TypedValue* TypedValueOf(JSContextRef context, JSValueRef value);

// A whole number of either kind as a 64-bit integer; false when it is none or beyond the range.
bool IntegerOf(JSContextRef context, JSValueRef value, std::int64_t& result);

}  // namespace qv::devservice

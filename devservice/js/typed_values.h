// `typed`: values with a type that the script chooses.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <string>

#include "devservice/js/date_reader.h"
#include "devservice/values/value_types.h"

namespace qv::devservice {

// What typed.int(5) and its kin return: an opaque object that carries type and text to the answer.
struct TypedValue {
  const ValueType* type;
  std::string text;
};

// Puts `typed` into a global object and returns it. The reader is borrowed and has to outlive the context.
JSObjectRef InstallTyped(JSContextRef context, JSObjectRef global, const DateReader& dates);

// What the value carries when it is one of these objects, else null. Lives as long as the value.
const TypedValue* TypedValueOf(JSContextRef context, JSValueRef value);

// The text that typed.TYPE(value) carries. False when the value is none of the type, or when String(value)
// threw, which is left in `exception`. DescribeWelcome says what is one, for the end of a message.
bool WriteTypedText(JSContextRef context, const ValueType& type, const DateReader& dates, JSValueRef value,
                    std::string& text, JSValueRef* exception);
std::string DescribeWelcome(const ValueType& type);

// A whole number of either kind as a 64-bit integer; false when it is none or beyond the range.
bool IntegerOf(JSContextRef context, JSValueRef value, std::int64_t& result);

}  // namespace qv::devservice

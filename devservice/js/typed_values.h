// `typed`: values with a type that the script chooses.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <string>

#include "devservice/js/date_reader.h"
#include "devservice/values/value_types.h"

namespace qv::devservice {

// What typed.int(5) and similar calls return: an opaque object with the type and text for the answer.
struct TypedValue {
  const ValueType* type;
  std::string text;
};

// Puts `typed` into a global object and returns it. The reader is borrowed and has to outlive the context.
JSObjectRef InstallTyped(JSContextRef context, JSObjectRef global, const DateReader& dates);

// The content of such an object, null for any other value. Lives as long as the value.
const TypedValue* TypedValueOf(JSContextRef context, JSValueRef value);

// The text of typed.TYPE(value). False when the value is not of the type, or when String(value) threw;
// `exception` is what it threw. DescribeWelcome names valid values, for the end of a message.
bool WriteTypedText(JSContextRef context, const ValueType& type, const DateReader& dates, JSValueRef value,
                    std::string& text, JSValueRef* exception);
std::string DescribeWelcome(const ValueType& type);

// A whole Number or BigInt as a 64-bit integer; false for other values and beyond the range.
bool IntegerOf(JSContextRef context, JSValueRef value, std::int64_t& result);

}  // namespace qv::devservice

#include "devservice/js/error_place.h"

#include <charconv>
#include <cmath>

#include "devservice/js/handles.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

// The line in the first frame of a stack that is of the script: "f@script:3:6".
std::optional<int> LineInStack(const std::string& stack) {
  const std::string mark = std::string("@") + kScriptUrl + ":";
  const std::size_t at = stack.find(mark);
  if (at == std::string::npos) return std::nullopt;
  int line = 0;
  const char* digits = stack.data() + at + mark.size();
  const auto [end, error] = std::from_chars(digits, stack.data() + stack.size(), line);
  if (error != std::errc() || end == digits) return std::nullopt;
  return line;
}

// What syntax errors have in place of a stack.
std::optional<int> LineProperty(JSContextRef context, JSObjectRef error) {
  const JSValueRef value = GetProperty(context, error, "line");
  if (!value || !JSValueIsNumber(context, value)) return std::nullopt;
  const double number = JSValueToNumber(context, value, nullptr);
  if (!(number >= 1 && number <= 2147483647.0) || number != std::trunc(number)) return std::nullopt;
  return static_cast<int>(number);
}

}  // namespace

std::optional<int> LineOfError(JSContextRef context, JSObjectRef error) {
  const JSValueRef stack = GetProperty(context, error, "stack");
  if (stack && JSValueIsString(context, stack)) {
    const std::optional<int> line =
        LineInStack(Utf16ToUtf8(TextOfValue(context, stack, nullptr).value_or(u"")));
    if (line) return line;
  }
  return LineProperty(context, error);
}

std::string WithLine(const std::string& text, int line) {
  return text + " (line " + std::to_string(line) + ")";
}

}  // namespace qv::devservice

// Feeds the command line's parameters, "name=type:value". Nothing may crash or be undefined; a refusal has a
// reason, and the text of a value that was taken reads back to the same value.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <utf8.h>

#include "qvscriptwells/xml_library_hold.h"
#include "scriptwells/value.h"
#include "tools/input/parameter_text.h"
#include "tools/report/failure.h"

namespace {

using scriptwells::Argument;
using scriptwells::Value;

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsText(const std::string& text) {
  return utf8::is_valid(text.begin(), text.end());
}

// Such a value is a path: a fuzzer would open whatever it can name.
bool NamesAFile(const std::string& text) {
  return text.find("=file:") != std::string::npos;
}

// The text of a duration has 6 digits of the seconds, and durations are compared part by part.
bool IsSame(const Value& a, const Value& b) {
  return a.type() == b.type() && (a == b || a.ToString() == b.ToString());
}

void ReadBack(const Value& value) {
  const std::string text = value.ToString();
  Require(IsText(text) && IsText(value.ToJson()));
  const std::string again = std::string("n=") + ToString(value.type()) + ":" + text;
  const Argument argument = qv::cli::ParseParameter(again).argument;
  Require(argument.GetValue() != nullptr && IsSame(*argument.GetValue(), value));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (NamesAFile(text)) return 0;
  try {
    const qv::cli::ScriptParameter parameter = qv::cli::ParseParameter(text);
    Require(!parameter.argument.Name().empty() && IsText(parameter.argument.Name()));
    for (const std::string& note : parameter.notes) Require(IsText(note) && !note.empty());
    Require(parameter.argument.GetValue() != nullptr);
    ReadBack(*parameter.argument.GetValue());
  } catch (const qv::cli::Failure& failure) {
    Require(failure.Status() == qv::cli::ExitStatus::kLocal && !failure.Message().empty());
  }
  return 0;
}

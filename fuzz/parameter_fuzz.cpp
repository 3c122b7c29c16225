// Feeds the command line's parameters, "name=type:value". Nothing may crash or be undefined; a refusal has a
// reason, and the text of a value that was taken reads back to the same value.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include <utf8.h>

#include "qvscriptwells/xml_library_hold.h"
#include "tools/output/answer_format.h"
#include "tools/report/failure.h"
#include "tools/values/parameter_text.h"

namespace {

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

// Not the numbers: a NaN is the same as itself, and 0 is another than -0.
template <class Bits, class Real>
Bits BitsOf(Real value) {
  Bits bits;
  static_assert(sizeof bits == sizeof value);
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

bool IsSame(const qv::Variant& a, const qv::Variant& b) {
  if (a.Tag() != b.Tag()) return false;
  if (a.Tag() == qv::VT_R4)
    return BitsOf<std::uint32_t>(a.Data().fltVal) == BitsOf<std::uint32_t>(b.Data().fltVal);
  if (a.Tag() == qv::VT_R8 || a.Tag() == qv::VT_DATE)
    return BitsOf<std::uint64_t>(a.Data().dblVal) == BitsOf<std::uint64_t>(b.Data().dblVal);
  return qv::cli::ValueText(a) == qv::cli::ValueText(b);
}

// The name of the type decides how a text is read, and a date at midnight, for one, is no datetime any more.
void ReadBack(const qv::cli::ScriptParameter& parameter) {
  const qv::Variant& value = parameter.value;
  const std::string text = qv::cli::ValueText(value);
  Require(IsText(text) && IsText(qv::cli::ValueJsonText(value)));
  if (value.Tag() == qv::VT_DATE) return;  // its text has no fraction of a second
  const std::string again = "n=" + qv::cli::TypeName(value) + ":" + text;
  Require(IsSame(qv::cli::ParseParameter(again).value, value));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (NamesAFile(text)) return 0;
  try {
    const qv::cli::ScriptParameter parameter = qv::cli::ParseParameter(text);
    Require(!parameter.name.empty() && IsText(parameter.name));
    for (const std::string& note : parameter.notes) Require(IsText(note) && !note.empty());
    ReadBack(parameter);
  } catch (const qv::cli::Failure& failure) {
    Require(failure.Status() == qv::cli::ExitStatus::kLocal && !failure.Message().empty());
  }
  return 0;
}

// Feeds whole answers to the reader of responses: envelopes, values of all types, faults with and without an
// error object. Nothing may crash, leak or take long, and what leaves the reader is one of its own failures.
// The first byte chooses the action (0 to 2); the rest is UTF-8.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <xercesc/dom/DOMException.hpp>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/value_types_hold.h"
#include "qvscriptwells/xml_library_hold.h"
#include "soap/soap_response.h"

namespace {

constexpr std::array<const char16_t*, 3> kActions = {u"Execute", u"CreateUserSession", u"CloseUserSession"};

void Require(bool holds) {
  if (!holds) std::abort();
}

// What arrived can be copied and converted to text, or the conversion is refused.
void LookAt(const qv::Variant& value) {
  const qv::Variant copy(value);  // NOLINT(performance-unnecessary-copy-initialization): to try the copy
  Require(copy.Tag() == value.Tag());
  if (value.Tag() == qv::VT_BSTR) Require(copy.Text() == value.Text());
}

void Read(const char16_t* action, const qv::WideString& text) {
  qv::CSOAPResponse response;
  response.SetText(action, text, false);
  try {
    response.ParseText();
  } catch (const qv::EQvException&) {
    Require(response.Value().Tag() == qv::VT_EMPTY);  // a failure leaves no half value
    return;
  }
  LookAt(response.Value());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  static const qv::ValueTypesHold types;
  if (size == 0) return 0;
  const char16_t* const action = kActions[data[0] % kActions.size()];
  try {
    Read(action, qv::FromUtf8({reinterpret_cast<const char*>(data) + 1, size - 1}));
  } catch (const XERCES_CPP_NAMESPACE::DOMException&) {  // passes through by contract
  }
  return 0;
}

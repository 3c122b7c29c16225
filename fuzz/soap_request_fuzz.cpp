// Feeds the development service's reader of envelopes; the first line of the input is the header SOAPAction.
// Nothing may crash or be undefined; a refusal has one of the service's own codes, and texts that were taken
// are UTF-8.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <utf8.h>

#include "devservice/soap/soap_request.h"
#include "devservice/values/fault_codes.h"

namespace {

using namespace qv::devservice;

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsText(const std::string& text) {
  return utf8::is_valid(text.begin(), text.end());
}

void Look(const SoapRequest& request) {
  Require(*ActionName(request.action) != '\0');
  Require(IsText(request.connectionString) && IsText(request.sessionId) && IsText(request.scriptDocument));
  for (const Parameter& parameter : request.parameters)
    Require(!parameter.type.empty() && IsText(parameter.name) && IsText(parameter.text));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Namespaces spaces("http://quorvane.example");
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = input.find('\n');
  if (end == std::string_view::npos) return 0;
  try {
    Look(ParseSoapRequest(input.substr(end + 1), input.substr(0, end), spaces));
  } catch (const FaultError& error) {
    Require(error.Code() >= kBadRequest && error.Code() <= kTooManyFiles && *error.what() != '\0');
  }
  return 0;
}

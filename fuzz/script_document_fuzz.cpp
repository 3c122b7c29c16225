// Feeds the development service's reader of script documents, which takes renderings of files as well.
// Nothing may crash or be undefined; a refusal has its own code, and an accepted script is UTF-8.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <utf8.h>

#include "devservice/soap/script_document.h"
#include "devservice/values/fault_codes.h"

namespace {

using namespace qv::devservice;

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Namespaces spaces("http://quorvane.example");
  try {
    const std::string code = ReadScriptDocument({reinterpret_cast<const char*>(data), size}, spaces);
    Require(utf8::is_valid(code.begin(), code.end()));
  } catch (const FaultError& error) {
    Require(error.Code() == kBadScriptDocument || error.Code() == kUnknownLanguage);
  }
  return 0;
}

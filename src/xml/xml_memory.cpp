#include "qvscriptwells/xml_memory.h"

namespace qv {
namespace {

[[gnu::tls_model("initial-exec")]] thread_local std::size_t ceiling = kNoXmlMemoryCeiling;

}  // namespace

void SetThreadXmlMemoryCeiling(std::size_t bytes) noexcept {
  ceiling = bytes;
}

std::size_t ThreadXmlMemoryCeiling() noexcept {
  return ceiling;
}

}  // namespace qv

#include "qvscriptwells/xml_memory.h"

namespace qv {
namespace {

thread_local std::size_t ceiling = kNoXmlMemoryCeiling;

}  // namespace

void SetThreadXmlMemoryCeiling(std::size_t bytes) noexcept {
  ceiling = bytes;
}

std::size_t ThreadXmlMemoryCeiling() noexcept {
  return ceiling;
}

}  // namespace qv

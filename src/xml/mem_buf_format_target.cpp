#include "xml/mem_buf_format_target.h"

#include <algorithm>

namespace qv {

void MemBufFormatTarget::writeChars(const XMLByte* bytes, XMLSize_t count, xercesc::XMLFormatter*) {
  constexpr XMLSize_t kStep = 1024;
  XMLCh units[kStep];
  for (XMLSize_t done = 0; done < count; done += kStep) {
    const XMLSize_t step = std::min(kStep, count - done);
    std::copy(bytes + done, bytes + done + step, units);
    buffer_->append(units, step);
  }
}

// The buffer takes a count of 0 as "up to the null unit".
void MemBufFormatTarget::Append(std::u16string_view units) {
  if (!units.empty()) buffer_->append(units.data(), units.size());
}

std::u16string_view MemBufFormatTarget::view() const {
  return {buffer_->getRawBuffer(), buffer_->getLen()};
}

}  // namespace qv

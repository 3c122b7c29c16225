// A text of 16-bit units as the XML library's input, without a copy and without a conversion to bytes. The
// encoding is fixed, so the one that an XML declaration names is ignored. A leading byte order mark is
// skipped, and a lone surrogate reads as U+FFFD, as in ToUtf8. The text is borrowed: it must outlive the
// source and every stream of it. Used by one thread.
#pragma once

#include <string_view>

#include <xercesc/sax/InputSource.hpp>

namespace qv {

class TextInputSource : public XERCES_CPP_NAMESPACE_QUALIFIER InputSource {
 public:
  // `systemId` appears in error reports. `manager` allocates its copy and the streams.
  TextInputSource(std::u16string_view text, const char16_t* systemId,
                  XERCES_CPP_NAMESPACE_QUALIFIER MemoryManager* manager);

  XERCES_CPP_NAMESPACE_QUALIFIER BinInputStream* makeStream() const override;
  const XMLCh* getEncoding() const override;

 private:
  const std::u16string_view text_;
};

}  // namespace qv

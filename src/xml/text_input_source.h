// A text of 16-bit units as the XML library reads it, without a copy and without a conversion to bytes. The
// encoding is fixed, so whatever an XML declaration in the text claims is not believed. A byte order mark in
// front is left out, and a lone surrogate reads as U+FFFD, as everywhere where text becomes bytes. Borrowed:
// the text must outlive the source and every stream of it. Used by one thread.
#pragma once

#include <string_view>

#include <xercesc/sax/InputSource.hpp>

namespace qv {

class TextInputSource : public XERCES_CPP_NAMESPACE_QUALIFIER InputSource {
 public:
  // `systemId` is what error reports name. `manager` pays for its copy and for the streams.
  TextInputSource(std::u16string_view text, const char16_t* systemId,
                  XERCES_CPP_NAMESPACE_QUALIFIER MemoryManager* manager);

  XERCES_CPP_NAMESPACE_QUALIFIER BinInputStream* makeStream() const override;
  const XMLCh* getEncoding() const override;

 private:
  const std::u16string_view text_;
};

}  // namespace qv

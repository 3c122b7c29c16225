// Passes a serializer's pieces to its target. Most units are plain ASCII, which is the same in UTF-8: they
// are written directly, and only the rest goes through the XML library's slower formatter. The text is the
// same as with the formatter alone.
#pragma once

#include <string_view>

#include <xercesc/framework/XMLFormatter.hpp>

#include "xml/mem_buf_format_target.h"

namespace qv {

class SerializerOutput {
 public:
  // `formatter` writes to `target`; both are borrowed.
  SerializerOutput(XERCES_CPP_NAMESPACE_QUALIFIER XMLFormatter& formatter, MemBufFormatTarget& target)
      : formatter_(formatter), target_(target) {}

  // Each throws DOMException for half of a surrogate pair. Writes markup, names and values unchanged. Null
  // writes nothing.
  void Put(const XMLCh* text);
  // With the formatter's escapes for text between tags.
  void PutText(std::u16string_view text);
  // With the formatter's escapes for attribute values.
  void PutAttribute(std::u16string_view text);

 private:
  using Formatter = XERCES_CPP_NAMESPACE_QUALIFIER XMLFormatter;
  void PutRuns(std::u16string_view text, bool (*isPlain)(char16_t unit), Formatter::EscapeFlags escapes);

  Formatter& formatter_;
  MemBufFormatTarget& target_;
};

}  // namespace qv

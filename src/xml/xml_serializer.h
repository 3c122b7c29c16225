// Turns a node and all below it back into text.
#pragma once

#include <memory>

#include <xercesc/framework/XMLFormatter.hpp>

#include "qvscriptwells/wide_string.h"
#include "xml/xml_node.h"

namespace qv {

// The text is UTF-8 with every byte in a unit of its own: readers in the field put the bytes together again.
// Comments, CDATA sections, processing instructions and references to entities stay; an element without
// children is written with "/>"; nothing is written for the XML declaration. Used on one thread, with the
// library started (XmlLibraryGuardScope).
class CXMLSerializer {
 public:
  CXMLSerializer() = default;
  virtual ~CXMLSerializer() = default;
  CXMLSerializer(const CXMLSerializer&) = delete;
  CXMLSerializer& operator=(const CXMLSerializer&) = delete;

  // A line feed stands at the end, and one behind each child of a document. "Serializetion FAILED"
  // (EQvException, code 0) for whatever goes wrong: a node that cannot stand alone, such as an attribute or a
  // null node, text that has no UTF-8 form, or no memory.
  WideString Serialize(const XmlNode& node);

 private:
  std::unique_ptr<XERCES_CPP_NAMESPACE_QUALIFIER XMLFormatter> formatter_;
  WideString result_;
  const char encoding_[6] = {'U', 'T', 'F', '-', '8', 0};
};

}  // namespace qv

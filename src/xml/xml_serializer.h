// Serializes a node and its descendants.
#pragma once

#include <memory>

#include <xercesc/framework/XMLFormatter.hpp>

#include "qvscriptwells/wide_string.h"
#include "xml/xml_node.h"

namespace qv {

// The text is UTF-8 with one byte in each unit; deployed readers reassemble the bytes. Comments, CDATA
// sections, processing instructions and entity references stay; an element without children ends with "/>";
// the XML declaration is omitted. The node must be of the XML library's tree, as those of script documents
// are. Used on one thread, with the library started (XmlLibraryGuardScope).
class CXMLSerializer {
 public:
  CXMLSerializer() = default;
  virtual ~CXMLSerializer() = default;
  CXMLSerializer(const CXMLSerializer&) = delete;
  CXMLSerializer& operator=(const CXMLSerializer&) = delete;

  // A line feed is at the end, and after each child of a document. Any failure is "Serializetion FAILED"
  // (EQvException, code 0): an attribute or a null node, text that has no UTF-8 form, or lack of memory.
  WideString Serialize(const XmlNode& node);

 private:
  std::unique_ptr<XERCES_CPP_NAMESPACE_QUALIFIER XMLFormatter> formatter_;
  WideString result_;
  const char encoding_[6] = {'U', 'T', 'F', '-', '8', 0};
};

}  // namespace qv

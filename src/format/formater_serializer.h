// Converts values of one type to XML text and back. Without state: one object serves all values.
#pragma once

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"
#include "xml/xml_node.h"

namespace qv {

class FormaterSerializer {
 public:
  virtual ~FormaterSerializer() = default;
  // The value that the node's text means. Failure: exceptions; what is bad is told by the type.
  virtual Variant ReadValue(const XmlNode& node) = 0;
  // The value's text, escaped for XML already. The tag is the caller's care.
  virtual WideString WriteValue(const Variant& value) = 0;
};

}  // namespace qv

// Converts values of one type to XML text and back. Stateless: one object serves all values.
#pragma once

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"
#include "xml/xml_node.h"

namespace qv {

class FormaterSerializer {
 public:
  virtual ~FormaterSerializer() = default;
  // The value of the node's text. Failure: exceptions that depend on the type.
  virtual Variant ReadValue(const XmlNode& node) = 0;
  // The value's text, escaped for XML. The caller checks the tag.
  virtual WideString WriteValue(const Variant& value) = 0;
};

}  // namespace qv

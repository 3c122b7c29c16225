// Converts values of one type to XML text and back. Stateless: one object serves all values.
#pragma once

#include <string_view>

#include "format/text_place.h"
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
  // The same text, in `place` or in `value`: borrowed until either changes.
  virtual std::u16string_view TextOf(const Variant& value, TextPlace& place) {
    place.text = WriteValue(value);
    return place.text.view();
  }
};

// For types whose texts are short.
class ShortTextFormater : public FormaterSerializer {
 public:
  WideString WriteValue(const Variant& value) final {
    TextPlace place;
    return WideString(TextOf(value, place));
  }
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override = 0;
};

}  // namespace qv

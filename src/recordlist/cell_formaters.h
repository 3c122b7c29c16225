// Converts the cells of one table. The formater of a type is looked up once; a type without formater reads as
// VT_EMPTY and writes as an empty text. Lives for one table, on the stack.
//
// Failure: EQvException passes through; anything else becomes EQvException "Cannot create the recordlist",
// code 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "format/formater_serializer.h"

namespace qv {

class CellFormaters {
 public:
  // `text` is the text node of the cell, or a null node.
  Variant ReadCell(std::int32_t columnType, const XmlNode& text);
  // Escaped for XML once. Empty for a type without formater. Borrowed until the next call, or a change of
  // `value`.
  std::u16string_view WriteCell(std::int32_t columnType, const Variant& value);

 private:
  static constexpr std::size_t kKnownTypes = 24;
  struct Place {
    FormaterSerializer* formater = nullptr;  // borrowed from the factory
    bool asked = false;
  };

  FormaterSerializer* FormaterOf(std::int32_t columnType);

  Place places_[kKnownTypes];
  TextPlace text_;
};

}  // namespace qv

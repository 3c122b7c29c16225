// Tables by chance: as the text of an answer, and as a list with values of every tag.
#pragma once

#include <string>

#include "qvscriptwells/record_list.h"
#include "support/near_plain_texts.h"

namespace qv {

class TableByChance {
 public:
  explicit TableByChance(std::uint32_t seed) : texts_(seed) {}

  // An element <v> with a table, most of them readable. Some records have too few cells, a few too many.
  std::u16string Xml();
  // A list of the built-in class with columns of any type. Most of them have a text.
  IRecordListPtr List();

 private:
  std::u16string CellXml(std::u16string_view type);
  Variant Value();
  Variant Object();
  WideString Text();
  bool OneIn(std::size_t chances) { return texts_.Below(chances) == 0; }

  NearPlainTexts texts_;
};

}  // namespace qv

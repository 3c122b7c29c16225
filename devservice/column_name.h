// Names of columns, which become names of elements.
#pragma once

#include <string_view>

namespace qv::devservice {

// Whether the text can be the name of an element without prefix for every reader: a letter or "_", then
// letters, digits, "-", "." and "_". Letters are those of the Latin, Greek, Cyrillic and East Asian scripts
// that also readers of older editions of XML know.
bool IsColumnName(std::u16string_view text);

}  // namespace qv::devservice

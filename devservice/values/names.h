// Which texts can be the name of a column or of a published file. Both functions are pure and thread-safe.
#pragma once

#include <string_view>

namespace qv::devservice {

// Columns become elements. Their names start with a letter or "_", then follow letters, digits, "-", "." and
// "_". Letters are those of the Latin, Greek, Cyrillic and East Asian scripts that all editions of XML know.
bool IsColumnName(std::u16string_view text);

// Clients store files under the text after the last "=" of a Content-Disposition header. So a name, in UTF-8,
// has 1 to 255 bytes, is neither "." nor "..", holds no control characters and none of '"', ';', '=', '/' and
// '\', and has no blank at either end, where it would get lost.
bool IsFileName(std::string_view name);

}  // namespace qv::devservice

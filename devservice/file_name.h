// Names of published files, as they stand in a Content-Disposition header.
#pragma once

#include <string_view>

namespace qv::devservice {

// Whether the text, in UTF-8, can be the name of a file that clients store: 1 to 255 bytes, neither "." nor
// "..", without control characters and without '"', ';', '=', '/' and '\' (clients take what stands behind
// the last "=" as it is), and without a blank at either end (it would get lost on the way). Pure; any thread.
bool IsFileName(std::string_view name);

}  // namespace qv::devservice

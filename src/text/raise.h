// Refusals of the library's own that come with words.
#pragma once

#include <string>

#include "qvscriptwells/com_error.h"

namespace qv {

// Throws `_com_error` with these words, in UTF-8, as its description.
[[noreturn]] void Raise(HRESULT code, const std::string& words);

}  // namespace qv

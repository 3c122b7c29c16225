// What a text from another source must not send to a terminal: see the library's own file.
#pragma once

#include "face/text/unsafe_characters.h"

namespace qv::cli {

using scriptwells::EscapeForJson;
using scriptwells::EscapeFormatCharacters;
using scriptwells::EscapeForTerminal;
using scriptwells::FormatCharacterAt;
using scriptwells::HoldsUnsafeCharacters;
using scriptwells::kFormatEscape;
using scriptwells::OneLine;

}  // namespace qv::cli

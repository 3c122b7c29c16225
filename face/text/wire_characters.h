// Characters that the library sends in a form that is not well-formed XML: a character beyond the basic plane
// as two references, one for each surrogate, and control characters unescaped.
#pragma once

#include <string>

namespace scriptwells {

// "U+1F600": the first character of `text` (valid UTF-8) that servers with a strict XML parser reject; empty
// if there is none.
std::string FirstRefusedCharacter(const std::string& text);

// "holds U+1F600, which does not travel as well-formed XML, so most servers refuse it"; empty if there
// is no such character.
std::string RefusedCharacterNote(const std::string& text);

}  // namespace scriptwells

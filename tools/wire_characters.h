// Characters that the protocol carries in a form that is no XML: the library writes a character beyond the
// basic plane as two references, one for each surrogate, and control characters as they are.
#pragma once

#include <string>

namespace qv::cli {

// "U+1F600": the first character of `text` (valid UTF-8) that servers with a strict XML parser refuse; empty
// when there is none.
std::string FirstRefusedCharacter(const std::string& text);

// "holds U+1F600, which does not travel as well-formed XML, so most servers refuse it"; empty when all is
// well.
std::string RefusedCharacterNote(const std::string& text);

}  // namespace qv::cli

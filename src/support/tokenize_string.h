// The one tokenizer.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "qvscriptwells/wide_string.h"

namespace qv {

// Clears `tokens` and fills it with the pieces of `text` between separators. Returns the number of valid
// pieces, which callers must use: `tokens` has one more, which is meaningless.
//  - No separator, an empty text or an empty separator: 0 and no tokens.
//  - A separator at the very start: 0 and one empty token.
//  - The search resumes one unit after the end of a separator, so of two adjacent separators the second
//    belongs to the next piece: "a=1;;b=2" gives "a=1" and ";b=2".
// Throws `_com_error`, E_OUTOFMEMORY.
std::size_t TokenizeString(std::u16string_view text, std::u16string_view separator,
                           std::vector<WideString>& tokens);

}  // namespace qv

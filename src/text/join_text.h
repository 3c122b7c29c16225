// Concatenates texts. Lack of memory throws `_com_error`, E_OUTOFMEMORY. With an intermediate std::u16string
// it would be std::bad_alloc, which hosts see as another failure.
#pragma once

#include <initializer_list>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

// The concatenated pieces, including null units; never null.
WideString JoinText(std::initializer_list<std::u16string_view> pieces);

}  // namespace qv

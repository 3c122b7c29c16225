// The one place where a text is made of several, so that running out of memory has one code there:
// `_com_error`, E_OUTOFMEMORY. A std::u16string on the way would throw std::bad_alloc, which hosts see as
// another failure.
#pragma once

#include <initializer_list>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

// The pieces, one after the other, null units too; never null.
WideString JoinText(std::initializer_list<std::u16string_view> pieces);

}  // namespace qv

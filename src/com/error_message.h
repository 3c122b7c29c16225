// Posts error records that consist of a message.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// Posts a record of this thread with `message`, for a failure of `interfaceId` if it is known.
void PostErrorMessage(const WideString& message, const Guid& interfaceId = {}) noexcept;
// The same for UTF-8. If memory for the text is lacking, the record has no message.
void PostErrorMessage(const char* message, const Guid& interfaceId = {}) noexcept;

}  // namespace qv

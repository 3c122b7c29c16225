// The thread's error record: words that a failed operation leaves beside its result code, as COM's
// SetErrorInfo and GetErrorInfo keep them. One record per thread; an operation that can leave one clears it
// when it starts. Nothing here fails or needs memory. The library's own records fill the description, and the
// source where the registry knows the class.
#pragma once

#include "qvscriptwells/com_error.h"

namespace qv {

// Posts a record for this thread, replacing the one that waits.
void SetErrorInfo(const ErrorInfo& info) noexcept;
// Takes the waiting record: true and *info filled, and none waits afterwards; or false and *info unchanged.
bool GetErrorInfo(ErrorInfo* info) noexcept;
// Drops the waiting record, if any.
void ClearErrorInfo() noexcept;

}  // namespace qv

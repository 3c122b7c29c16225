// SPDX-License-Identifier: Apache-2.0
// The thread's error record: the message of a failed operation, in addition to its result code, as in COM's
// SetErrorInfo and GetErrorInfo. One record per thread; an operation that can leave one clears it when it
// starts. Nothing here fails or allocates memory. The library fills the description, and the source if the
// registry knows the class.
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

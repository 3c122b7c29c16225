// Failures of conversions, and of calls of the interfaces below.
#pragma once

#include <string>

#include "qvscriptwells/com_error.h"
#include "scriptwells/error.h"

namespace scriptwells {

// Throws ConversionError.
[[noreturn]] void RefuseConversion(const std::string& reason);

// The error's message, or "failure 0x80004005" if it has none.
std::string MessageOf(const qv::_com_error& error);

// Throws an Error of this phase with the message, the fixed text and the result code of the failed call;
// std::bad_alloc for lack of memory.
[[noreturn]] void ThrowFailure(Phase phase, const qv::_com_error& error);

}  // namespace scriptwells

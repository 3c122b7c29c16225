// Arguments as the parameter list of a call.
#pragma once

#include <string_view>

#include "qvscriptwells/objects.h"
#include "scriptwells/session.h"

namespace scriptwells {

// Checks and converts all arguments; files must be readable. Null for none, for which the protocol has
// another form. With `strict`, refuses what sending would change. Throws Error (kConversion, kLocalFile) that
// names the argument.
qv::IParametersPtr MakeParameters(const Arguments& arguments, bool strict);

std::size_t CountFiles(const Arguments& arguments) noexcept;

// Checks a script or the name of its language: UTF-8 without null characters, and not empty. Throws
// ConversionError.
void CheckText(std::string_view text, const char* what, bool strict);

}  // namespace scriptwells

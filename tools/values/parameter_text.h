// Parameters as on the command line: "name=type:value".
#pragma once

#include <string>
#include <vector>

#include "qvscriptwells/variant.h"

namespace qv::cli {

struct ScriptParameter {
  std::string name;  // UTF-8, not empty
  Variant value;
  // How sending changes the value: "travels with 6 significant digits", "travels as date". Often none.
  std::vector<std::string> notes;
};

// Parses a parameter strictly, while the library accepts any text as a number. A file (type "file") must be
// readable, and its path must not hold "\", which the library reads as "/". Throws Failure (kLocal) that
// names the parameter and the reason.
ScriptParameter ParseParameter(const std::string& text);

// "byte, short, ...", for messages.
std::string KnownParameterTypes();

// Whether the value is a file, which the library uploads while it writes the call.
bool IsFileParameter(const Variant& value);

}  // namespace qv::cli

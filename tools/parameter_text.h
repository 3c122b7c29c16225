// Parameters as they stand on the command line: "name=type:value".
#pragma once

#include <string>
#include <vector>

#include "qvscriptwells/variant.h"

namespace qv::cli {

struct ScriptParameter {
  std::string name;  // UTF-8, not empty
  Variant value;
  // What the wire makes of the value: "travels with 6 significant digits", "travels as date". Often none.
  std::vector<std::string> notes;
};

// The library takes any text for a number; here a value has to be what its type says, whole and in range, so
// that a slip of the hand is told at once and not computed with. Throws Failure (kLocal) that names the
// parameter and the reason.
ScriptParameter ParseParameter(const std::string& text);

// "byte, short, ...", for messages.
std::string KnownParameterTypes();

}  // namespace qv::cli

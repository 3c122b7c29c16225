// Parameters as on the command line: "name=type:value".
#pragma once

#include <string>
#include <vector>

#include "scriptwells/session.h"

namespace qv::cli {

struct ScriptParameter {
  scriptwells::Argument argument;  // its name is not empty
  // How sending changes the value: "travels with 6 significant digits", "travels as date". Often none.
  std::vector<std::string> notes;
};

// What "name=type:value" consists of. Throws Failure (kLocal) for any other text.
struct ParameterParts {
  std::string name;
  std::string type;
  std::string value;
};
ParameterParts SplitParameter(const std::string& text);

// Parses a parameter strictly. A file (type "file") must be readable, and its path must not hold "\", which
// the library reads as "/". Throws Failure (kLocal) that names the parameter and the reason.
ScriptParameter ParseParameter(const std::string& text);

ScriptParameter MakeParameter(const ParameterParts& parts);

// "byte", "short", ..., "file".
std::vector<std::string> ParameterTypes();

}  // namespace qv::cli

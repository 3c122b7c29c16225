// Shows the place of a fault in its script.
#pragma once

#include <string>

#include "tools/report/failure.h"

namespace qv::cli {

// The line of the place and a mark below it: a caret at the column or, if that is unknown, below the whole
// line.
//     2 | return foo.bar()
//       |        ^
// Long lines are cut around the column. Empty if the script has no such line, or nothing in it.
std::string Excerpt(const std::string& script, const ScriptPlace& place);

}  // namespace qv::cli

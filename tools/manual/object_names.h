// The names that `describe` takes.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// "Parameters", "Parameters.Add"
std::vector<std::string> ObjectNames();

}  // namespace qv::cli

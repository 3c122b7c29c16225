// Checks a shared library before the system maps it.
#pragma once

#include <string>

namespace qv {

// Whether the file is shorter than its program headers say (System V ABI, ELF object files). The system maps
// such a library, and the program crashes on access to the missing bytes. False for a file that is not a
// shared library; the system's loader reports that.
bool IsCutOff(const std::string& path);

}  // namespace qv

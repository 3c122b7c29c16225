// A look at a shared library before the system maps it.
#pragma once

#include <string>

namespace qv {

// Whether the file ends before what its program headers promise (System V ABI, ELF object files): the system
// maps such a library all the same, and the program dies where the bytes are missing. False for a file that
// is no shared library at all: the system's loader has the words for it.
bool IsCutOff(const std::string& path);

}  // namespace qv

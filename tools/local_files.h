// Files and directories of this machine, checked before any server is asked. Texts are UTF-8.
#pragma once

#include <cstdint>
#include <string>

namespace qv::cli {

// All throw Failure (kLocal) that names the file; `what` is such as "script document".

// Absolute, but not otherwise changed. Also refuses an empty name and one that holds a null character.
std::string AbsolutePath(const std::string& file, const std::string& what);

// The size of a regular file that can be read now.
std::int64_t CheckReadable(const std::string& file, const std::string& what);

// The absolute path of such a file, for the library to open: one that holds "\" is refused, since the library
// takes it for "/".
std::string CheckForLibrary(const std::string& file, const std::string& what);

// The absolute path of a directory that files can be made in, without "/" at its end; empty stands for the
// current one. One that holds "\" or is not UTF-8 is refused: the library takes "\" for "/".
std::string CheckTargetDirectory(const std::string& directory);

}  // namespace qv::cli

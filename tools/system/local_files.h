// Files and directories of this machine, checked before any request is sent. Texts are UTF-8.
#pragma once

#include <cstdint>
#include <string>

namespace qv::cli {

// All throw Failure (kLocal) that names the file. `what` is the kind of file for the message, such as
// "script document".

// The absolute path, otherwise unchanged. Rejects an empty name and a null character.
std::string AbsolutePath(const std::string& file, const std::string& what);

// The size of a regular file that can be read now.
std::int64_t CheckReadable(const std::string& file, const std::string& what);

// The absolute path of such a file. Rejects a path with "\", which the library reads as "/".
std::string CheckForLibrary(const std::string& file, const std::string& what);

// The absolute path of a writable directory, without "/" at its end; an empty name is the current directory.
// Rejects a path with "\", which the library reads as "/", and one that is not UTF-8.
std::string CheckTargetDirectory(const std::string& directory);

}  // namespace qv::cli

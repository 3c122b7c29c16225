// Checks of local files and directories before anything is sent. `what` names the file in messages: "file",
// "key". Each function throws Error (kLocalFile).
#pragma once

#include <filesystem>
#include <string>

namespace scriptwells {

// The absolute path of a regular file that can be read, and that the interfaces below can open: they read "\"
// as
// "/".
std::string ReadablePath(const std::filesystem::path& file, const char* what);

// "file:///..." of a script document: a regular file of 1 byte to 64 MB.
std::string DocumentUrl(const std::filesystem::path& file);

// The absolute path of a directory into which files can be saved.
std::string TargetDirectory(const std::filesystem::path& directory);

}  // namespace scriptwells

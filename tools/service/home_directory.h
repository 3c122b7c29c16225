// The home directory of the installation, which the registry names. It holds the upload scripts, with which
// the library asks a server where to upload a file. Paths are UTF-8 and native.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// Empty if the registry has none, or one that is longer than the library reads.
std::string HomeDirectory();

// The paths of both upload scripts below `home`: for a new file, and for one that the server has already.
std::vector<std::string> UploadScripts(const std::string& home);

// Whether the library can read both below `home`.
bool HasUploadScripts(const std::string& home);

// Checks that the library finds what it needs for an upload. Throws Failure (kLocal) with the reason and a
// remedy.
void CheckUploadScripts();

// Throws Failure (kLocal) for a path below which the library cannot open scripts.
void CheckHomePath(const std::string& home);

// Writes the missing upload scripts of the development service below `home`, and its directories. Returns
// whether it wrote anything. Throws Failure (kLocal).
bool InstallMissingScripts(const std::string& home);

// Sets the home directory in the registry. `home` is absolute. Returns the registry file that was written.
// Throws Failure (kLocal).
std::string SetHomeDirectory(const std::string& home);

}  // namespace qv::cli

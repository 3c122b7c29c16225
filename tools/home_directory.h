// The home directory of the installation, as the registry tells it. The library finds the scripts there that
// ask a server where a file may be uploaded to. Paths are UTF-8 and native.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// Empty when the registry knows none, or one that is longer than the library reads.
std::string HomeDirectory();

// Both scripts below `home`: for a file that is new to the server, and for one that it has already.
std::vector<std::string> UploadScripts(const std::string& home);

// Whether the library finds both of them below `home`.
bool HasUploadScripts(const std::string& home);

// Whether the library finds what it needs for an upload. Throws Failure (kLocal) with the reason and a way
// out.
void CheckUploadScripts();

// Refuses a path that the library cannot open scripts below. Throws Failure (kLocal).
void CheckHomePath(const std::string& home);

// Writes those of the development service's upload scripts that are missing below `home`, with all
// directories. True when there was something to write. Throws Failure (kLocal).
bool InstallMissingScripts(const std::string& home);

// Makes the absolute path of `home` the home directory. Returns the registry's file that was written. Throws
// Failure (kLocal).
std::string SetHomeDirectory(const std::string& home);

}  // namespace qv::cli

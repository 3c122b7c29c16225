// The upload scripts below the home directory, with which the library asks a server where to upload a file.
#pragma once

#include <string>

namespace scriptwells {

// Checks that the library finds what it needs for an upload. `home` is as in CallSettings. Throws Error
// (kLocalFile) with the reason, both files and how to get them.
void CheckUploadScripts(const std::string& home);

}  // namespace scriptwells

// Names of files, as they are typed in the shell.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// The path with the home directory in place of "~/" at its start.
std::string WithoutTilde(const std::string& path);

// The files and folders that begin like this path, written as it is; folders with "/" at their end. Hidden
// ones only if the name begins with ".". At most 1000; none if the folder cannot be read.
std::vector<std::string> FileNames(const std::string& begun);

}  // namespace qv::cli

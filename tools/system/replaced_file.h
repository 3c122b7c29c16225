// Files that are replaced as a whole.
#pragma once

#include <string>

namespace qv::cli {

// Replaces the file at `path` by a new one with mode 0600, which appears complete or not at all. A symbolic
// link stays, and its target is replaced. When root writes, the owner of a replaced file stays. Throws
// Failure (kLocal); the old file is then unchanged.
void ReplaceFile(const std::string& path, const std::string& bytes);

// Creates the directory of `path`, and that of the directory, with mode 0700 where they are missing. Throws
// Failure (kLocal).
void MakeParentDirectories(const std::string& path);

}  // namespace qv::cli

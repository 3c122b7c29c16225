// Registry files on the disk: validated reads, and writes that replace the whole file. Paths are UTF-8. Any
// thread; of two writers at once the later one wins.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace qv {

constexpr std::size_t kLongestRegistryFile = std::size_t{1024} * 1024;

struct RegistryBytes {
  std::string bytes;    // none if the file is missing
  std::string problem;  // why it cannot be read; empty if it can, or is missing
};

// Regular files only; a pipe fails without waiting. Throws std::bad_alloc, also when the system has no
// memory.
RegistryBytes ReadRegistryBytes(const std::string& path);

// Replaces `path` by a complete new file. Returns 0, or errno, and then the old file is unchanged. A symbolic
// link is followed and kept; a dangling one is replaced. The mode stays, and so does the owner when root
// writes; a new file gets 0644. Fails for a file without write permission, even if its directory is writable.
int ReplaceRegistryBytes(const std::string& path, std::string_view bytes);

// Creates the directory of `path` and its parent if missing, with this mode. Returns 0 or errno.
int MakeRegistryDirectories(const std::string& path, mode_t mode);

}  // namespace qv

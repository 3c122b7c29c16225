// Registry files on the disk: read with care, replaced as a whole. Paths are UTF-8. Any thread; of two
// writers at once the later one's file stands.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qv {

constexpr std::size_t kLongestRegistryFile = std::size_t{1024} * 1024;

struct RegistryBytes {
  std::string bytes;    // none when the file is not there
  std::string problem;  // why it cannot be read; empty when it can, or is not there
};

// Regular files only; a pipe is refused and not waited for. Throws std::bad_alloc, also when the system has
// no memory.
RegistryBytes ReadRegistryBytes(const std::string& path);

// Puts a complete new file in the place of `path`: 0, or the errno of what failed, and the old file stands
// then. A symbolic link is followed, so that it stays a link; one that leads nowhere is replaced. The mode
// stays, and the owner when root writes; a new file gets 0644. A file without the right to write is refused
// though its directory has it.
int ReplaceRegistryBytes(const std::string& path, std::string_view bytes);

// Makes the directory of `path` and the one above it where they are missing, with mode 0700: 0 or errno.
int MakeRegistryDirectories(const std::string& path);

}  // namespace qv

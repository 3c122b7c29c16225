// Opens local files: regular ones only; a pipe without a writer fails without waiting. Paths are UTF-8. Any
// thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "system/unique_descriptor.h"

namespace qv {

// Used as an errno: a directory, a device or a pipe.
constexpr int kNotRegular = -1;

struct RegularFile {
  UniqueDescriptor descriptor;  // open, close-on-exec, unless error is set
  std::int64_t size = 0;        // at the moment of opening
  int error = 0;                // 0, an errno, or kNotRegular
};

RegularFile OpenRegularFile(const std::string& path);

// Appends the rest of the file, but stops when `bytes` has more than `most`. Returns 0 or an errno.
int ReadToEnd(int descriptor, std::size_t most, std::string& bytes);

}  // namespace qv

// Local files, opened with care: regular ones only, and a pipe without a writer is refused rather than waited
// for. Paths are UTF-8. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "system/unique_descriptor.h"

namespace qv {

// In place of an errno: a directory, a device, a pipe.
constexpr int kNotRegular = -1;

struct RegularFile {
  UniqueDescriptor descriptor;  // open, close-on-exec, unless error is set
  std::int64_t size = 0;        // at the moment of opening
  int error = 0;                // 0, an errno, or kNotRegular
};

RegularFile OpenRegularFile(const std::string& path);

// Appends what is left of the file, but stops when `bytes` holds more than `most`: 0 or an errno.
int ReadToEnd(int descriptor, std::size_t most, std::string& bytes);

}  // namespace qv

#include "qvscriptwells/native_path.h"

#include <algorithm>

namespace qv {

std::string NativePath(const WideString& fileName) {
  std::string path = ToUtf8(fileName);
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

}  // namespace qv

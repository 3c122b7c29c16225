#include "tools/temp_directory.h"

#include <cstdlib>

namespace qv::cli {

namespace {

const char* Variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : nullptr;
}

}  // namespace

void SetTempDirectory() {
  if (Variable("TEMP") != nullptr || Variable("TMP") != nullptr) return;
  const char* usual = Variable("TMPDIR");
  ::setenv("TEMP", usual != nullptr ? usual : "/tmp", 1);
}

}  // namespace qv::cli

#include "tests/documents/output_of.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <stdexcept>

namespace qv::documents {

CommandOutput OutputOf(const std::string& command) {
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("no shell for: " + command);
  CommandOutput output;
  std::array<char, 4096> bytes;
  for (std::size_t count = 1; count > 0;) {
    count = std::fread(bytes.data(), 1, bytes.size(), pipe);
    output.text.append(bytes.data(), count);
  }
  const int status = ::pclose(pipe);
  if (WIFEXITED(status)) output.exit = WEXITSTATUS(status);
  return output;
}

}  // namespace qv::documents

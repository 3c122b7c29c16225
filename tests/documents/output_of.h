// What a shell command prints.
#pragma once

#include <string>

namespace qv::documents {

struct CommandOutput {
  std::string text;  // of standard output
  int exit = -1;
};

CommandOutput OutputOf(const std::string& command);

}  // namespace qv::documents

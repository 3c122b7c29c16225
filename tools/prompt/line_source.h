// Where the lines of a shell come from.
#pragma once

#include <string>

namespace qv::cli {

struct ShellLine {
  enum class Kind { kLine, kInterrupted, kEnd };
  Kind kind = Kind::kEnd;
  std::string text{};  // without a line end
};

class LineSource {
 public:
  virtual ~LineSource() = default;
  // The next line; `isOpen`: of a script that has begun. Throws Failure (kLocal).
  virtual ShellLine Next(bool isOpen) = 0;
};

}  // namespace qv::cli

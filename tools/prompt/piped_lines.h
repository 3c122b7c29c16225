// Lines of standard input that is not a terminal.
#pragma once

#include "tools/prompt/line_source.h"

namespace qv::cli {

class PipedLines : public LineSource {
 public:
  // Throws Failure: kInterrupted, kLocal for a line of more than 64 MB.
  ShellLine Next(bool isOpen) override;

 private:
  bool ReadMore();

  std::string read_;
  std::size_t begin_ = 0;  // of the next line
  bool atEnd_ = false;
};

}  // namespace qv::cli

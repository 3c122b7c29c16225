// `describe` on the command line.
#pragma once

#include "tools/input/parsed_options.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

class DescribeArguments {
 public:
  // Adds the command to `app`, which owns it. Parsing sets the options of this object.
  explicit DescribeArguments(CLI::App& app);
  DescribeArguments(const DescribeArguments&) = delete;
  DescribeArguments& operator=(const DescribeArguments&) = delete;

  bool Parsed() const;
  // To be called after parsing. Returns an error message, or null.
  const char* Check() const;
  const DescribeOptions& Options() const { return describe_; }

 private:
  DescribeOptions describe_;
  CLI::App* command_;
  CLI::Option* object_;
};

}  // namespace qv::cli

// `describe` on the command line.
#pragma once

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"

namespace qv::cli {

class DescribeArguments : public CommandArguments {
 public:
  explicit DescribeArguments(CLI::App& app);
  // To be called after parsing. Returns an error message, or null.
  const char* Check() const;
  const DescribeOptions& Options() const { return describe_; }

 private:
  DescribeOptions describe_;
  CLI::Option* object_;
};

}  // namespace qv::cli

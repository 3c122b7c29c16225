// `explain` on the command line.
#pragma once

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"

namespace qv::cli {

class ExplainArguments : public CommandArguments {
 public:
  explicit ExplainArguments(CLI::App& app);
  // To be called after parsing. Returns an error message, or null.
  const char* Check() const;
  const ExplainOptions& Options() const { return explain_; }

 private:
  ExplainOptions explain_;
};

}  // namespace qv::cli

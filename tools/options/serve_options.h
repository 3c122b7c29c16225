// The options of `serve`.
#pragma once

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"

namespace qv::cli {

class ServeArguments : public CommandArguments {
 public:
  explicit ServeArguments(CLI::App& app);
  // To be called after parsing. Returns an error message, or null.
  const char* Check() const;
  const ServeOptions& Options() const { return serve_; }

 private:
  ServeOptions serve_;
  CLI::Option* home_ = nullptr;
};

}  // namespace qv::cli

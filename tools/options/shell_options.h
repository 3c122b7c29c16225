// The options of `shell`.
#pragma once

#include <optional>

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"
#include "tools/options/script_options.h"
#include "tools/options/session_options.h"

namespace qv::cli {

class ShellArguments : public CommandArguments {
 public:
  explicit ShellArguments(CLI::App& app);
  // To be called once, after parsing. Returns an error message, or null.
  const char* Check();
  const ShellOptions& Options() const { return shell_; }

 private:
  ShellOptions shell_;
  OutputArgument output_;
  std::optional<SessionArguments> session_;
  CLI::Option* noHistory_ = nullptr;
};

}  // namespace qv::cli

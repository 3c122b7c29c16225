// `check` on the command line.
#pragma once

#include <optional>

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"
#include "tools/options/session_options.h"

namespace qv::cli {

class CheckArguments : public CommandArguments {
 public:
  explicit CheckArguments(CLI::App& app);
  // To be called after parsing. Returns an error message, or null.
  const char* Check();
  const CheckOptions& Options() const { return check_; }

 private:
  void DefineScripts();

  CheckOptions check_;
  std::string address_;
  std::optional<SessionArguments> session_;
};

}  // namespace qv::cli

// The options of `session open` and `session close`.
#pragma once

#include <optional>

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"
#include "tools/options/session_options.h"

namespace qv::cli {

class SessionCommandArguments : public CommandArguments {
 public:
  explicit SessionCommandArguments(CLI::App& app);
  // To be called once, after parsing. Returns an error message, or null.
  const char* Check();
  const SessionCommandOptions& Options() const { return options_; }

 private:
  SessionCommandOptions options_;
  CLI::App* open_;
  CLI::App* close_;
  std::optional<SessionArguments> opening_;
  std::optional<SessionArguments> closing_;
};

}  // namespace qv::cli

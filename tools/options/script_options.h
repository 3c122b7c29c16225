// Options of all commands that run scripts.
#pragma once

#include <string>

#include "tools/input/parsed_options.h"
#include "tools/options/session_options.h"

namespace qv::cli {

// Adds -p, which sets `options`. They must outlive `command`.
void AddParameters(CLI::App& command, ScriptOptions& options);

// To be called after parsing: uses the server of the environment, unless --local is given. Returns an error
// message, or null.
const char* TakeServerOrLocal(SessionArguments& session, ScriptOptions& options);

// --output
class OutputArgument {
 public:
  void Define(CLI::App& command);
  // To be called after parsing: sets the output of `options`, from the environment, a profile and --json,
  // too. Returns an error message, or null.
  const char* Take(ScriptOptions& options);
  // Whether it is on the command line.
  bool IsChosen() const;

 private:
  std::string text_ = "text";
  CLI::App* command_ = nullptr;
};

}  // namespace qv::cli

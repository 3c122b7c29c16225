// The commands below `registry`.
#pragma once

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"

namespace qv::cli {

class RegistryArguments : public CommandArguments {
 public:
  explicit RegistryArguments(CLI::App& app);
  // To be called after parsing. Returns an error message, or null.
  const char* Check();
  const RegistryOptions& Options() const { return registry_; }

 private:
  void AddJson(CLI::App& command);
  CLI::App* AddVerb(RegistryVerb verb, const char* name, const char* description);

  struct VerbRow {
    RegistryVerb verb;
    CLI::App* command;
  };

  RegistryOptions registry_;
  std::vector<VerbRow> verbs_;
};

}  // namespace qv::cli

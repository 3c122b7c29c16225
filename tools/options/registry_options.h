// The commands below `registry`.
#pragma once

#include "tools/input/parsed_options.h"

namespace CLI {
class App;
}

namespace qv::cli {

class RegistryArguments {
 public:
  // Adds the command to `app`, which owns it. Parsing sets the options of this object.
  explicit RegistryArguments(CLI::App& app);
  RegistryArguments(const RegistryArguments&) = delete;
  RegistryArguments& operator=(const RegistryArguments&) = delete;

  bool Parsed() const;
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
  CLI::App* command_;
  std::vector<VerbRow> verbs_;
};

}  // namespace qv::cli

// The commands below `registry`.
#pragma once

#include "tools/options.h"

namespace CLI {
class App;
}

namespace qv::cli {

class RegistryArguments {
 public:
  // Adds the commands to `app`, which owns them; their parsing writes to this object.
  explicit RegistryArguments(CLI::App& app);
  RegistryArguments(const RegistryArguments&) = delete;
  RegistryArguments& operator=(const RegistryArguments&) = delete;

  bool Parsed() const;
  // After parsing: what is wrong, or null.
  const char* Check();
  const RegistryOptions& Options() const { return registry_; }

 private:
  void AddJson(CLI::App& command);
  CLI::App* AddVerb(RegistryVerb verb, const char* name, const char* words);

  struct VerbRow {
    RegistryVerb verb;
    CLI::App* command;
  };

  RegistryOptions registry_;
  CLI::App* command_;
  std::vector<VerbRow> verbs_;
};

}  // namespace qv::cli

// The commands below `config`.
#pragma once

#include <string>
#include <vector>

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"

namespace qv::cli {

class ConfigArguments : public CommandArguments {
 public:
  explicit ConfigArguments(CLI::App& app);
  void SetProfile(const std::string& name) { config_.profile = name; }
  // Whether the command is `config show`, whose options are settled as those of a command that calls.
  bool Shows() const;
  // To be called once, after parsing. Returns an error message, or an empty text.
  std::string Check();
  const ConfigOptions& Options() const { return config_; }

 private:
  void AddJson(CLI::App& command);
  CLI::App* AddVerb(ConfigVerb verb, const char* name, const char* description);
  std::string WrongWithSetting();
  std::string WrongWithValue();

  struct VerbRow {
    ConfigVerb verb;
    CLI::App* command;
  };

  ConfigOptions config_;
  std::string output_ = "text";
  CLI::App* show_ = nullptr;  // its options also check the value of `set`
  std::vector<VerbRow> verbs_;
};

}  // namespace qv::cli

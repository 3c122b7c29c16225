#include "tools/options/registry_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"

namespace qv::cli {

RegistryArguments::RegistryArguments(CLI::App& app)
    : CommandArguments(
          app.add_subcommand("registry", "Show and change the settings that the library finds")) {
  SetHelp(*command_, kRegistryExamples, kRegistryNotes);
  command_->require_subcommand(0, 1);
  AddJson(*command_);
  CLI::App* get = AddVerb(RegistryVerb::kGet, "get", "Print the value of a key");
  CLI::App* set = AddVerb(RegistryVerb::kSet, "set", "Give a key a value; prints the file's path");
  CLI::App* remove = AddVerb(RegistryVerb::kRemove, "remove", "Remove a key; prints the file's path");
  AddVerb(RegistryVerb::kList, "list", "Print every file, key and value");
  for (CLI::App* verb : {get, set, remove})
    verb->add_option("KEY", registry_.key, "The key, or \"home\"")->type_name("")->required();
  set->add_option("VALUE", registry_.value, "Its text")->type_name("")->required();
  SetHelp(*set, kRegistrySetExamples, kRegistrySetNotes);
}

CLI::App* RegistryArguments::AddVerb(RegistryVerb verb, const char* name, const char* description) {
  CLI::App* command = command_->add_subcommand(name, description);
  AddJson(*command);
  verbs_.push_back({verb, command});
  return command;
}

// Users type it before or after the verb.
void RegistryArguments::AddJson(CLI::App& command) {
  command.add_flag("--json", registry_.json, "Results and failures as one line of JSON each");
}

const char* RegistryArguments::Check() {
  for (const VerbRow& row : verbs_) {
    if (!row.command->parsed()) continue;
    registry_.verb = row.verb;
    return nullptr;
  }
  return "no registry command given (get, set, remove or list)";
}

}  // namespace qv::cli

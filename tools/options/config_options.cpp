#include "tools/options/config_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"
#include "tools/options/setting_options.h"
#include "tools/settings/profile.h"

namespace qv::cli {

ConfigArguments::ConfigArguments(CLI::App& app)
    : CommandArguments(app.add_subcommand("config", "Show and change your profiles of settings")) {
  SetHelp(*command_, kConfigExamples, kProfilesNotes);
  command_->require_subcommand(0, 1);
  AddJson(*command_);
  show_ = AddVerb(ConfigVerb::kShow, "show", "Print every setting, its value, and where that comes from");
  CLI::App* set =
      AddVerb(ConfigVerb::kSet, "set", "Give a setting of a profile a value; prints the file's path");
  CLI::App* unset =
      AddVerb(ConfigVerb::kUnset, "unset", "Remove a setting of a profile; prints the file's path");
  AddVerb(ConfigVerb::kPath, "path", "Print the path of the file of profiles");
  AddVerb(ConfigVerb::kProfiles, "profiles", "Print the names of the profiles, one a line");
  for (CLI::App* verb : {show_, set, unset}) AddProfile(*verb);
  for (CLI::App* verb : {set, unset})
    verb->add_option("KEY", config_.key, "A setting, or \"default\" for the default profile")
        ->type_name("")
        ->required();
  set->add_option("VALUE", config_.value, "Its text")->type_name("")->required();
  SetHelp(*set, kConfigSetExamples, kConfigSetNotes);
  ReadVariablesIfParsed(*show_);
  AddServerSettings(*show_, config_.checked);
  AddCredentialSettings(*show_, config_.checked);
  AddTlsSettings(*show_, config_.checked);
  AddTimeSettings(*show_, config_.checked);
  AddLanguageSetting(*show_, config_.checked);
  AddOutputSetting(*show_, output_);
}

CLI::App* ConfigArguments::AddVerb(ConfigVerb verb, const char* name, const char* description) {
  CLI::App* command = command_->add_subcommand(name, description);
  AddJson(*command);
  verbs_.push_back({verb, command});
  return command;
}

// Users type it before or after the verb.
void ConfigArguments::AddJson(CLI::App& command) {
  command.add_flag("--json", config_.json, "Results and failures as one line of JSON each");
}

bool ConfigArguments::Shows() const {
  return show_->parsed();
}

std::string ConfigArguments::Check() {
  for (const VerbRow& row : verbs_) {
    if (!row.command->parsed()) continue;
    config_.verb = row.verb;
    const bool changes = row.verb == ConfigVerb::kSet || row.verb == ConfigVerb::kUnset;
    return changes ? WrongWithSetting() : "";
  }
  return "no config command given (show, set, unset, path or profiles)";
}

std::string ConfigArguments::WrongWithSetting() {
  if (!config_.profile.empty() && !IsProfileName(config_.profile))
    return "the name of a profile has letters, digits, '-' and '_' only, at most 64, and no '-' first";
  if (config_.key == "default")
    return config_.profile.empty() ? ""
                                   : "the default profile is not a setting of a profile; leave out --profile";
  std::string wrong = WrongWithKey(config_.key);
  if (!wrong.empty() || config_.verb == ConfigVerb::kUnset) return wrong;
  return WrongWithValue();
}

// As the flag does, whose name is in the message. Times are kept with their unit.
std::string ConfigArguments::WrongWithValue() {
  if (config_.value.empty()) return config_.key + " is empty; to remove it: config unset " + config_.key;
  config_.checked = {};  // without the values of variables
  CLI::Option& option = *show_->get_option("--" + config_.key);
  option.clear();
  try {
    option.add_result(config_.value);
    option.run_callback();
  } catch (const CLI::ParseError& error) {
    return error.what();
  }
  const char* wrong = WrongTimeLimit(config_.checked);
  return wrong == nullptr ? "" : wrong;
}

}  // namespace qv::cli

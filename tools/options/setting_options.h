// The options of settings, and what they are set to after the command line: by a variable or a profile.
#pragma once

#include <string>
#include <vector>

#include "tools/input/parsed_options.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

// Adds the option of a setting (tools/settings/setting.h), which sets `target`. `target` must outlive
// `command`.
CLI::Option* AddSetting(CLI::App& command, const char* key, std::string& target);
CLI::Option* AddTimeSetting(CLI::App& command, const char* key, double& target);
// All settings of a server and its password, and the time limits.
void AddServerSettings(CLI::App& command, SessionOptions& options);
void AddCredentialSettings(CLI::App& command, SessionOptions& options);
void AddTlsSettings(CLI::App& command, SessionOptions& options);
void AddTimeSettings(CLI::App& command, SessionOptions& options);
void AddLanguageSetting(CLI::App& command, ScriptOptions& options);
// --output FORMAT, of which help and completion show all, or `shown`, such as "{csv,json}".
CLI::Option* AddOutputSetting(CLI::App& command, std::string& target, const std::string& shown = {});

// The format of this name; null if there is none.
const OutputFormat* FindOutput(const std::string& name);

// Whether the option is on the command line; a variable or a profile may have set it otherwise.
bool IsTyped(const CLI::App& command, const std::string& option);

// What is wrong with a time limit; null if nothing is.
const char* WrongTimeLimit(const SessionOptions& options);

// Lets a wrong variable fail this command only. To be called for each command with settings.
void ReadVariablesIfParsed(CLI::App& command);

// Adds --profile.
void AddProfile(CLI::App& command);

// The settings of a command, and notes for the user.
struct Settled {
  std::vector<SettledSetting> settings;
  bool hasSavedPasswordFile = false;
  std::vector<std::string> notes;
};

// Sets the options of `command`, which has been parsed, to the values of the profile, except those that are
// typed or have a variable. `name` is the profile; empty: the usual one. Settings of a server are left out
// with `isLocal`, and the password unless server and user are those of the profile. Throws Failure (kLocal)
// for a profile that cannot be used.
Settled SettleOptions(CLI::App& command, const std::string& name, bool isLocal);

}  // namespace qv::cli

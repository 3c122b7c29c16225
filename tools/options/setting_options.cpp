#include "tools/options/setting_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <map>

#include "tools/options/time_span.h"
#include "tools/settings/setting.h"

namespace qv::cli {

namespace {

const std::map<std::string, OutputFormat> kOutputs = {{"text", OutputFormat::kText},
                                                      {"json", OutputFormat::kJson},
                                                      {"table", OutputFormat::kTable},
                                                      {"csv", OutputFormat::kCsv}};

// The options of these read their variable themselves, since another option may override it.
constexpr const char* kOwnVariable[] = {"server", "output"};

const char* VariableFor(const Setting& setting) {
  const bool isOwn = std::any_of(std::begin(kOwnVariable), std::end(kOwnVariable),
                                 [&](const std::string& key) { return key == setting.key; });
  return isOwn ? "" : setting.variable;
}

std::string Flag(const char* key) {
  return std::string("--") + key;
}

}  // namespace

CLI::Option* AddSetting(CLI::App& command, const char* key, std::string& target) {
  const Setting& setting = *FindSetting(key);
  return command.add_option(Flag(key), target, setting.description)
      ->type_name(setting.valueName)
      ->envname(VariableFor(setting));
}

CLI::Option* AddTimeSetting(CLI::App& command, const char* key, double& target) {
  const Setting& setting = *FindSetting(key);
  return AddTime(command, Flag(key).c_str(), target, setting.description, setting.variable);
}

void AddServerSettings(CLI::App& command, SessionOptions& options) {
  AddSetting(command, "server", options.server);
  AddSetting(command, "proxy", options.proxy);
}

void AddCredentialSettings(CLI::App& command, SessionOptions& options) {
  AddSetting(command, "user", options.user);
  AddSetting(command, "password-command", options.passwordCommand);
  AddSetting(command, "password-file", options.passwordFile);
  AddSetting(command, "replica", options.replica);
}

void AddTlsSettings(CLI::App& command, SessionOptions& options) {
  AddSetting(command, "ca-file", options.caFile);
  AddSetting(command, "cert", options.certificateFile);
  AddSetting(command, "key", options.keyFile);
}

void AddTimeSettings(CLI::App& command, SessionOptions& options) {
  AddTimeSetting(command, "timeout", options.timeoutSeconds);
  AddTimeSetting(command, "connect-timeout", options.connectTimeoutSeconds);
  AddTimeSetting(command, "max-time", options.maxTimeSeconds);
}

void AddLanguageSetting(CLI::App& command, ScriptOptions& options) {
  AddSetting(command, "language", options.language)->capture_default_str();
}

CLI::Option* AddOutputSetting(CLI::App& command, std::string& target, const std::string& shown) {
  const Setting& setting = *FindSetting("output");
  CLI::Validator formats = CLI::IsMember(kOutputs);
  if (!shown.empty()) formats.description(shown);
  return command.add_option("-o,--output", target, setting.description)
      ->capture_default_str()
      ->type_name(setting.valueName)
      ->check(formats);
}

const OutputFormat* FindOutput(const std::string& name) {
  const auto found = kOutputs.find(name);
  return found == kOutputs.end() ? nullptr : &found->second;
}

bool IsTyped(const CLI::App& command, const std::string& option) {
  const std::vector<CLI::Option*>& typed = command.parse_order();
  return std::any_of(typed.begin(), typed.end(),
                     [&](const CLI::Option* one) { return one->check_name(option); });
}

const char* WrongTimeLimit(const SessionOptions& options) {
  if (!IsTimeLimit(options.timeoutSeconds)) return "--timeout must be between 0 and 86400 seconds";
  if (!IsTimeLimit(options.maxTimeSeconds)) return "--max-time must be between 0 and 86400 seconds";
  if (!IsTimeLimit(options.connectTimeoutSeconds))
    return "--connect-timeout must be between 0 and 86400 seconds";
  return nullptr;
}

// A command without such a callback has its variables read by the program itself, for all commands.
void ReadVariablesIfParsed(CLI::App& command) {
  command.parse_complete_callback([] {});
}

void AddProfile(CLI::App& command) {
  command.add_option("--profile")
      ->description(
          "Use the settings of this profile (environment: SCRIPTWELLS_PROFILE); see 'scriptwells "
          "help profiles'")
      ->type_name("PROFILE");
}

}  // namespace qv::cli

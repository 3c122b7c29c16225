#include <CLI/CLI.hpp>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include "tools/options/setting_options.h"
#include "tools/options/time_span.h"
#include "tools/report/failure.h"
#include "tools/settings/profile_store.h"

namespace qv::cli {

namespace {

constexpr char kPassword[] = "SCRIPTWELLS_PASSWORD";

// For the shown list, a password is only one that is there.
constexpr char kHidden[] = "***";

std::optional<std::string> Variable(const char* name) {
  const char* value = *name == '\0' ? nullptr : std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

// Settles the settings of one command in the order of their table.
class Settler {
 public:
  Settler(CLI::App& command, bool isLocal) : command_(command), isLocal_(isLocal) {}

  Settled Settle(const std::string& name) {
    file_ = ReadProfiles();
    const ChosenProfile chosen = ChooseProfile(file_, name);
    if (chosen.origin != ProfileOrigin::kNone) profile_ = &RequireProfile(file_, chosen);
    AddProfileRow(chosen);
    for (const Setting& setting : AllSettings()) SettleOne(setting);
    return std::move(settled_);
  }

 private:
  void AddProfileRow(const ChosenProfile& chosen) {
    switch (chosen.origin) {
      case ProfileOrigin::kNone:
        return Add({"profile", "", SettingSource::kDefault, "", "", 0});
      case ProfileOrigin::kFlag:
        return Add({"profile", chosen.name, SettingSource::kFlag, "--profile", "", 0});
      case ProfileOrigin::kVariable:
        return Add({"profile", chosen.name, SettingSource::kVariable, "SCRIPTWELLS_PROFILE", "", 0});
      case ProfileOrigin::kFile:
        return Add({"profile", chosen.name, SettingSource::kFile, "", file_.path, file_.usualLine});
    }
  }

  void SettleOne(const Setting& setting) {
    CLI::Option* option = command_.get_option_no_throw(std::string("--") + setting.key);
    if (option == nullptr) return;
    const std::optional<std::string> variable = Variable(setting.variable);
    const ProfileValue* value = profile_ == nullptr ? nullptr : profile_->Find(setting.key);
    if (IsTyped(command_, option->get_name()))
      AddRow(setting, option->results().back(), {"", "", SettingSource::kFlag, option->get_name(), "", 0});
    else if (variable)
      AddRow(setting, *variable, {"", "", SettingSource::kVariable, setting.variable, "", 0});
    else if (value != nullptr && Applies(setting))
      Apply(*value, *option);
    else
      AddRow(setting, option->get_default_str(), {});
    if (std::strcmp(setting.key, "user") == 0) AddPasswordRow();
  }

  bool Applies(const Setting& setting) {
    if (setting.scope == SettingScope::kEverywhere) return true;
    if (isLocal_) return false;
    return setting.scope == SettingScope::kServer || AppliesPassword();
  }

  // The password is sent to nobody else than the profile says.
  bool AppliesPassword() {
    return !IsPasswordGiven() && IsOfProfileOrNoted("server") && IsOfProfileOrNoted("user");
  }

  bool IsOfProfileOrNoted(const std::string& key) {
    if (IsOfProfile(key)) return true;
    settled_.notes.push_back("the password of the profile " + profile_->name + " is not used, since the " +
                             key + " is not that of the profile");
    return false;
  }

  bool IsPasswordGiven() const {
    for (const char* option : {"--password-command", "--password-file", "--password-stdin"})
      if (command_.get_option_no_throw(option) != nullptr && IsTyped(command_, option)) return true;
    return std::getenv(kPassword) != nullptr;
  }

  // A profile without a user has the password of whoever is one.
  bool IsOfProfile(const std::string& key) const {
    const ProfileValue* own = profile_->Find(key);
    if (own == nullptr) return key == "user";
    for (const SettledSetting& settled : settled_.settings)
      if (settled.key == key) return raw_.at(key) == own->text;
    return false;
  }

  // As the flag is: CLI11 converts and checks the text.
  void Apply(const ProfileValue& value, CLI::Option& option) {
    const Setting& setting = *value.setting;
    const bool isPath = setting.kind == SettingKind::kPath;
    try {
      option.add_result(isPath ? ExpandedPath(value.text) : value.text);
      option.run_callback();
    } catch (const CLI::ParseError& error) {
      RefuseValue(value, error.what());
    }
    const std::string text = option.results().back();
    if (setting.kind == SettingKind::kTime && !IsTimeLimit(SecondsOf(text).value_or(-1)))
      RefuseValue(value, std::string(setting.key) + " must be between 0 and 86400 seconds");
    if (std::strcmp(setting.key, "password-file") == 0) settled_.hasSavedPasswordFile = true;
    AddRow(setting, text, {"", "", SettingSource::kProfile, profile_->name, file_.path, value.line});
  }

  [[noreturn]] void RefuseValue(const ProfileValue& value, const std::string& reason) const {
    throw Failure(ExitStatus::kLocal, file_.path + ": line " + std::to_string(value.line) + ": " +
                                          (reason.rfind("--", 0) == 0 ? reason.substr(2) : reason));
  }

  void AddPasswordRow() {
    if (std::getenv(kPassword) != nullptr)
      Add({"password", kHidden, SettingSource::kVariable, kPassword, "", 0});
  }

  void AddRow(const Setting& setting, const std::string& value, SettledSetting row) {
    raw_[setting.key] = value;
    row.key = setting.key;
    row.value = ShownValue(setting, value);
    Add(row);
  }

  void Add(const SettledSetting& row) { settled_.settings.push_back(row); }

  CLI::App& command_;
  bool isLocal_;
  ProfileFile file_;
  const Profile* profile_ = nullptr;
  std::map<std::string, std::string> raw_;  // the values so far, as they are used
  Settled settled_;
};

}  // namespace

Settled SettleOptions(CLI::App& command, const std::string& name, bool isLocal) {
  return Settler(command, isLocal).Settle(name);
}

}  // namespace qv::cli

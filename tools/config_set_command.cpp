#include <utf8.h>

#include <ostream>

#include "tools/commands.h"
#include "tools/config_result.h"
#include "tools/report/failure.h"
#include "tools/report/reporter.h"
#include "tools/settings/profile_edit.h"
#include "tools/settings/profile_store.h"
#include "tools/system/local_files.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

namespace {

void CheckText(const std::string& key, const std::string& value) {
  if (!utf8::is_valid(value.begin(), value.end()))
    throw Failure(ExitStatus::kLocal, "the value of " + key + " is not valid UTF-8");
  for (const char c : value)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
      throw Failure(ExitStatus::kLocal, "the value of " + key + " contains a control character");
}

// Paths mean the same in every directory.
std::string Stored(const Setting& setting, const std::string& value) {
  if (setting.kind != SettingKind::kPath || value.compare(0, 2, "~/") == 0) return value;
  return AbsolutePath(value, setting.key);
}

// An address with a password before its host is rejected without repeating it.
void CheckAddress(const Setting& setting, const std::string& value) {
  if (ShownValue(setting, value) != value)
    throw Failure(ExitStatus::kLocal, std::string(setting.key) + " must not hold a user name; set user");
}

// As a command that calls does. The server of the other settings is of no importance.
void CheckAsFlag(const Setting& setting, RunOptions options) {
  const std::string key = setting.key;
  options.caFile = ExpandedPath(options.caFile);
  options.certificateFile = ExpandedPath(options.certificateFile);
  if (options.server.empty()) options.server = "http://localhost";
  if (key == "key") CheckReadable(ExpandedPath(options.keyFile), "key");
  CheckSettings(SettingsOf(options));
}

bool IsPassword(const Setting& setting) {
  return setting.scope == SettingScope::kPassword;
}

void NoteUnusedPassword(const std::string& path, const ProfilePlace& place, const Reporter& reporter) {
  const ProfileFile file = ParseProfiles(path, ReadProfileText(path));
  if (file.Find(place.profile)->Find("server") != nullptr) return;
  reporter.Note(
      "the password is used only with a server of the same profile: config set server URL --profile " +
      place.profile);
}

void SetUsual(const ConfigOptions& options, std::ostream& out) {
  const std::string path = RequireProfilePath();
  const std::string text = ReadProfileText(path);
  RequireProfile(ParseProfiles(path, text), {ProfileOrigin::kFlag, options.value});
  WriteProfileText(path, WithValue(path, text, {"", options.key}, options.value));
  PrintPath(path, options, out);
}

}  // namespace

void ConfigSetCommand(const ConfigOptions& options, std::ostream& out, std::ostream& err) {
  if (options.key == "default") return SetUsual(options, out);
  const Setting& setting = *FindSetting(options.key);
  const std::string value = Stored(setting, options.value);
  CheckText(options.key, value);
  CheckAddress(setting, value);
  CheckAsFlag(setting, options.checked);
  const std::string path = RequireProfilePath();
  const std::string text = ReadProfileText(path);
  const ProfilePlace place = PlaceOf(ParseProfiles(path, text), options);
  WriteProfileText(path, WithValue(path, text, place, value));
  PrintPath(path, options, out);
  if (IsPassword(setting)) NoteUnusedPassword(path, place, Reporter(err, FormOf(options.json)));
}

}  // namespace qv::cli

// The settings that a flag, an environment variable or a profile may give: one table for the options of the
// command line, the file of profiles and `scriptwells config`.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

enum class SettingKind {
  kText,
  kTime,  // as in time_span.h; in the file also a number
  kPath,  // in the file absolute, or below ~/
};

// Where a setting has a meaning.
enum class SettingScope {
  kEverywhere,
  kServer,    // not for --local
  kPassword,  // the same; in a profile, it is that of the profile's server and user only
};

struct Setting {
  const char* key;        // in the file; with "--" before it, the flag
  const char* variable;   // of the environment; empty: none
  const char* valueName;  // in help texts
  const char* description;
  SettingKind kind;
  SettingScope scope;
};

// In the order in which they are shown: what a password belongs to comes before it.
const std::vector<Setting>& AllSettings();

// Null if there is no such setting.
const Setting* FindSetting(const std::string& key);

// " (did you mean server?)", or empty if no key is close.
std::string MeantSetting(const std::string& key);

// Why this key cannot be one of the file, without the text of its value. Empty if it can.
std::string WrongWithKey(const std::string& key);

// The text as it may be shown: an address without a user name and password before its host.
std::string ShownValue(const Setting& setting, const std::string& value);

}  // namespace qv::cli

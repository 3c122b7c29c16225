// Profiles: named groups of settings in a file of the user.
//
//   default = "work"
//
//   [profile.work]
//   server = "https://scripts.example"
//   password-command = "pass show scripts/joe"
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/settings/setting.h"

namespace qv::cli {

struct ProfileValue {
  const Setting* setting;
  std::string text;
  unsigned line;  // of the file
};

struct Profile {
  std::string name;
  std::vector<ProfileValue> values;

  // Null if the profile does not have it.
  const ProfileValue* Find(const std::string& key) const;
};

struct ProfileFile {
  std::string path;
  std::string usual;  // the default profile; empty: none
  unsigned usualLine = 0;
  std::vector<Profile> profiles;  // in the order of their names

  const Profile* Find(const std::string& name) const;
};

// Reads the TOML text of the file at `path`. Throws Failure (kLocal) with the line for a text that is not
// TOML, an unknown key, a value of another kind, and a password. The message contains no value.
ProfileFile ParseProfiles(const std::string& path, const std::string& text);

// Letters, digits, "-" and "_", at most 64, the first of them not "-".
bool IsProfileName(const std::string& name);

// Where the name of the profile comes from.
enum class ProfileOrigin { kNone, kFlag, kVariable, kFile };

struct ChosenProfile {
  ProfileOrigin origin = ProfileOrigin::kNone;
  std::string name;
};

// The variable SCRIPTWELLS_PROFILE is read if `flag` is empty, then the default of the file.
ChosenProfile ChooseProfile(const ProfileFile& file, const std::string& flag);

// The profile of this name. Throws Failure (kLocal), with the closest name, if there is none.
const Profile& RequireProfile(const ProfileFile& file, const ChosenProfile& chosen);

// The path of a kPath value: "~/" at its start becomes the user's home directory.
std::string ExpandedPath(const std::string& text);

}  // namespace qv::cli

#include "tools/settings/profile.h"

#include <algorithm>
#include <cstdlib>

#include "tools/report/failure.h"
#include "tools/report/typed_name.h"
#include "tools/settings/toml_text.h"

namespace qv::cli {

namespace {

constexpr char kVariable[] = "SCRIPTWELLS_PROFILE";
constexpr std::size_t kLongestName = 64;
constexpr char kNameCharacters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

// Builds the result and reports what is wrong with its line.
class ProfileReader {
 public:
  explicit ProfileReader(const std::string& path) { file_.path = path; }

  ProfileFile Read(const toml::table& root) {
    for (const auto& [key, node] : root) {
      if (key.str() == "default")
        ReadUsual(node);
      else if (key.str() == "profile")
        ReadProfiles(node);
      else
        RefuseTopKey(key);
    }
    return std::move(file_);
  }

 private:
  [[noreturn]] void Refuse(const toml::source_position& at, const std::string& reason) const {
    throw Failure(ExitStatus::kLocal, file_.path + ": line " + std::to_string(at.line) + ": " + reason);
  }

  [[noreturn]] void RefuseTopKey(const toml::key& key) const {
    const std::string name(key.str());
    const std::string wrong = WrongWithKey(name);
    Refuse(key.source().begin,
           wrong.empty() ? name + " belongs into a profile, below a line [profile.NAME]" : wrong);
  }

  void ReadUsual(const toml::node& node) {
    const auto name = node.value_exact<std::string>();
    if (!name || !IsProfileName(*name))
      Refuse(node.source().begin, "default is not the name of a profile, in quotes");
    file_.usual = *name;
    file_.usualLine = node.source().begin.line;
  }

  void ReadProfiles(const toml::node& node) {
    if (!node.is_table()) Refuse(node.source().begin, "profile is not a table, such as [profile.work]");
    for (const auto& [key, profile] : *node.as_table()) {
      const std::string name(key.str());
      if (!profile.is_table())
        Refuse(key.source().begin, "a profile begins with a line such as [profile.work]");
      if (!IsProfileName(name))
        Refuse(key.source().begin,
               "the name of a profile has letters, digits, '-' and '_' only, at most 64, and no '-' first");
      file_.profiles.push_back({name, {}});
      for (const auto& [setting, value] : *profile.as_table()) ReadValue(setting, value);
      RefuseTwoPasswords(profile);
    }
  }

  void ReadValue(const toml::key& key, const toml::node& node) {
    const std::string name(key.str());
    const std::string wrong = WrongWithKey(name);
    if (!wrong.empty()) Refuse(key.source().begin, wrong);
    const Setting& setting = *FindSetting(name);
    const std::string text = TextOf(setting, node);
    if (setting.kind == SettingKind::kPath && ExpandedPath(text).front() != '/')
      Refuse(node.source().begin, name + " is not an absolute path, nor one below ~/");
    file_.profiles.back().values.push_back({&setting, text, node.source().begin.line});
  }

  std::string TextOf(const Setting& setting, const toml::node& node) const {
    if (setting.kind == SettingKind::kTime && node.is_number()) return ToToml(node);
    const auto text = node.value_exact<std::string>();
    if (!text) Refuse(node.source().begin, std::string(setting.key) + " is not a text in quotes");
    if (text->empty()) Refuse(node.source().begin, std::string(setting.key) + " is empty");
    if (HasControlCharacter(*text))
      Refuse(node.source().begin, std::string(setting.key) + " contains a control character");
    return *text;
  }

  void RefuseTwoPasswords(const toml::node& node) const {
    const Profile& profile = file_.profiles.back();
    if (profile.Find("password-command") != nullptr && profile.Find("password-file") != nullptr)
      Refuse(node.source().begin, "the profile " + profile.name +
                                      " has a password-command and a password-file; one of them is needed");
  }

  ProfileFile file_;
};

std::string MeantProfile(const ProfileFile& file, const std::string& name) {
  std::vector<std::string> names;
  for (const Profile& profile : file.profiles) names.push_back(profile.name);
  const std::string meant = ClosestName(name, names);
  return meant.empty() ? "" : " (did you mean " + meant + "?)";
}

std::string NamedBy(const ProfileFile& file, ProfileOrigin origin) {
  if (origin == ProfileOrigin::kVariable) return std::string(", which the variable ") + kVariable + " names";
  if (origin == ProfileOrigin::kFile) return ", which line " + std::to_string(file.usualLine) + " names";
  return "";
}

template <typename Row, typename Is>
const Row* FirstOf(const std::vector<Row>& rows, const Is& is) {
  const auto found = std::find_if(rows.begin(), rows.end(), is);
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace

const ProfileValue* Profile::Find(const std::string& key) const {
  return FirstOf(values, [&](const ProfileValue& value) { return key == value.setting->key; });
}

const Profile* ProfileFile::Find(const std::string& name) const {
  return FirstOf(profiles, [&](const Profile& profile) { return name == profile.name; });
}

ProfileFile ParseProfiles(const std::string& path, const std::string& text) {
  return ProfileReader(path).Read(ParseToml(path, text));
}

bool IsProfileName(const std::string& name) {
  return !name.empty() && name.size() <= kLongestName && name.front() != '-' &&
         name.find_first_not_of(kNameCharacters) == std::string::npos;
}

ChosenProfile ChooseProfile(const ProfileFile& file, const std::string& flag) {
  if (!flag.empty()) return {ProfileOrigin::kFlag, flag};
  const char* variable = std::getenv(kVariable);
  if (variable != nullptr && *variable != '\0') return {ProfileOrigin::kVariable, variable};
  return file.usual.empty() ? ChosenProfile() : ChosenProfile{ProfileOrigin::kFile, file.usual};
}

const Profile& RequireProfile(const ProfileFile& file, const ChosenProfile& chosen) {
  const Profile* profile = file.Find(chosen.name);
  if (profile != nullptr) return *profile;
  throw Failure(ExitStatus::kLocal, file.path + " has no profile '" + chosen.name + "'" +
                                        NamedBy(file, chosen.origin) + MeantProfile(file, chosen.name));
}

std::string ExpandedPath(const std::string& text) {
  if (text.compare(0, 2, "~/") != 0) return text;
  const char* home = std::getenv("HOME");
  return home == nullptr ? text : home + text.substr(1);
}

}  // namespace qv::cli

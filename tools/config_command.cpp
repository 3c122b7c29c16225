#include <nlohmann/json.hpp>
#include <ostream>

#include "tools/commands.h"
#include "tools/config_result.h"
#include "tools/output/text_table.h"
#include "tools/report/failure.h"
#include "tools/report/json_text.h"
#include "tools/report/standard_output.h"
#include "tools/settings/profile_edit.h"
#include "tools/settings/profile_store.h"

namespace qv::cli {

namespace {

using Json = nlohmann::ordered_json;

struct SourceRow {
  SettingSource source;
  const char* name;  // in JSON
};

constexpr SourceRow kSources[] = {{SettingSource::kDefault, "default"},
                                  {SettingSource::kFlag, "flag"},
                                  {SettingSource::kVariable, "environment"},
                                  {SettingSource::kProfile, "profile"},
                                  {SettingSource::kFile, "file"}};

const char* NameOf(SettingSource source) {
  for (const SourceRow& row : kSources)
    if (row.source == source) return row.name;
  return "";
}

std::string PlaceOf(const SettledSetting& setting) {
  return setting.file + " line " + std::to_string(setting.line);
}

std::string OriginOf(const SettledSetting& setting) {
  switch (setting.source) {
    case SettingSource::kDefault:
      return "default";
    case SettingSource::kFlag:
      return "flag " + setting.name;
    case SettingSource::kVariable:
      return "environment variable " + setting.name;
    case SettingSource::kProfile:
      return "profile " + setting.name + " in " + PlaceOf(setting);
    case SettingSource::kFile:
      return PlaceOf(setting);
  }
  return "";
}

Json TextOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

std::string JsonOf(const std::vector<SettledSetting>& settings) {
  std::string lines;
  for (const SettledSetting& setting : settings) {
    Json line;
    line["setting"] = setting.key;
    line["value"] = TextOrNull(setting.value);
    line["source"] = NameOf(setting.source);
    line["name"] = TextOrNull(setting.name);
    line["file"] = TextOrNull(setting.file);
    line["line"] = setting.line == 0 ? Json() : Json(setting.line);
    lines += JsonText(line) + "\n";
  }
  return lines;
}

std::string TableOf(const std::vector<SettledSetting>& settings) {
  std::vector<std::vector<std::string>> rows;
  rows.reserve(settings.size());
  for (const SettledSetting& setting : settings)
    rows.push_back({setting.key, setting.value, OriginOf(setting)});
  return FormatColumns({"SETTING", "VALUE", "FROM"}, rows);
}

void Write(const std::string& text, std::ostream& out) {
  out << TextFor(out, text) << std::flush;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
}

void Show(const ConfigOptions& options, std::ostream& out) {
  Write(options.json ? JsonOf(options.settings) : TableOf(options.settings), out);
}

void PrintProfiles(const ConfigOptions& options, std::ostream& out) {
  std::string lines;
  const ProfileFile file = ReadProfiles();
  for (const Profile& profile : file.profiles) {
    Json line;
    line["profile"] = profile.name;
    line["default"] = profile.name == file.usual;
    lines += (options.json ? JsonText(line) : profile.name) + "\n";
  }
  Write(lines, out);
}

bool HasValue(const ProfileFile& file, const ProfilePlace& place) {
  if (place.profile.empty()) return !file.usual.empty();
  const Profile* profile = file.Find(place.profile);
  return profile != nullptr && profile->Find(place.key) != nullptr;
}

void Unset(const ConfigOptions& options, std::ostream& out) {
  const std::string path = RequireProfilePath();
  const std::string text = ReadProfileText(path);
  const ProfileFile file = ParseProfiles(path, text);
  const ProfilePlace place = PlaceOf(file, options);
  if (!place.profile.empty()) RequireProfile(file, {ProfileOrigin::kFlag, place.profile});
  if (!HasValue(file, place))
    throw Failure(ExitStatus::kFault, place.profile.empty()
                                          ? path + " has no default profile"
                                          : "the profile " + place.profile + " has no " + place.key)
        .Called("no such setting");
  WriteProfileText(path, WithoutValue(path, text, place));
  PrintPath(path, options, out);
}

}  // namespace

void ConfigCommand(const ConfigOptions& options, std::ostream& out) {
  switch (options.verb) {
    case ConfigVerb::kShow:
      return Show(options, out);
    case ConfigVerb::kPath:
      return PrintPath(RequireProfilePath(), options, out);
    case ConfigVerb::kProfiles:
      return PrintProfiles(options, out);
    case ConfigVerb::kUnset:
      return Unset(options, out);
    case ConfigVerb::kSet:
      break;  // another library's, which has the checks of the flags
  }
}

ProfilePlace PlaceOf(const ProfileFile& file, const ConfigOptions& options) {
  if (options.key == "default") return {"", options.key};
  const ChosenProfile chosen = ChooseProfile(file, options.profile);
  if (chosen.origin == ProfileOrigin::kNone)
    throw Failure(ExitStatus::kUsage,
                  "no profile given (--profile NAME, or a default: config set default NAME)");
  if (!IsProfileName(chosen.name))
    throw Failure(ExitStatus::kLocal, "'" + chosen.name + "' cannot be the name of a profile");
  return {chosen.name, options.key};
}

void PrintPath(const std::string& path, const ConfigOptions& options, std::ostream& out) {
  Json line;
  line["file"] = path;
  Write((options.json ? JsonText(line) : path) + "\n", out);
}

}  // namespace qv::cli

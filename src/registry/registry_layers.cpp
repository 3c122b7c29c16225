#include "registry/registry_layers.h"

#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <utility>

#include "qvscriptwells/com_error.h"
#include "registry/registry_disk.h"
#include "registry/registry_file.h"
#include "system/system_error_text.h"

namespace qv {
namespace {

constexpr mode_t kForTheUserOnly = 0700;
constexpr mode_t kReadableForAll = 0755;

// Errors after which the next file is tried, since this one cannot be reached. A full disk is not one.
constexpr int kOutOfReach[] = {EACCES, EPERM, EROFS, ENOENT, ENOTDIR};

bool IsOutOfReach(int error) noexcept {
  return std::find(std::begin(kOutOfReach), std::end(kOutOfReach), error) != std::end(kOutOfReach);
}

bool IsControl(char16_t unit) noexcept {
  return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
}

// A lone surrogate would be read back as another text.
void RequireWritable(const WideString& text, const std::string& name) {
  const std::u16string_view units = text.view();
  if (std::any_of(units.begin(), units.end(), IsControl))
    RaiseWithWords(E_INVALIDARG, "The " + name + " holds a control character");
  if (FromUtf8(ToUtf8(text)) != text) RaiseWithWords(E_INVALIDARG, "The " + name + " holds half a character");
}

void RequireKey(const WideString& key) {
  if (key.IsEmpty()) RaiseWithWords(E_INVALIDARG, "The key is empty");
  RequireWritable(key, "key");
}

// A file that may be edited: completely read and valid.
struct SoundFile {
  std::string bytes;
  RegistryContent content;

  bool Has(const WideString& key) const { return !FindRegistryValue(content.entries, key).IsNull(); }
  bool Has(const RegistryValue& value) const {
    if (value.value.IsNull()) return false;
    if (value.name.IsEmpty()) return Has(value.key);
    return !FindNamedRegistryValue(content.named, value.key, value.name).IsNull();
  }
};

SoundFile LoadSound(const std::string& path) {
  RegistryBytes read = ReadRegistryBytes(path);
  if (!read.problem.empty()) RaiseWithWords(E_FAIL, path + ": " + read.problem);
  RegistryContent content = ParseRegistryFile(read.bytes);
  if (!content.damage.empty()) RaiseWithWords(E_FAIL, path + ": " + content.damage);
  return {std::move(read.bytes), std::move(content)};
}

std::string WithValues(const std::string& bytes, const std::vector<RegistryValue>& values) {
  std::string changed = bytes;
  for (const RegistryValue& value : values) changed = WithRegistryValue(changed, value);
  return changed;
}

void RequireWritable(const RegistryValue& value) {
  RequireKey(value.key);
  RequireWritable(value.name, "name");
  RequireWritable(value.value, "value");
}

int MakeDirectories(const RegistryPlace& place) {
  switch (place.kind) {
    case RegistryPlaceKind::kUser:
      return MakeRegistryDirectories(place.path, kForTheUserOnly);
    case RegistryPlaceKind::kAdministrator:
      return MakeRegistryDirectories(place.path, kReadableForAll);
    default:
      return 0;
  }
}

int Save(const RegistryPlace& place, const std::string& bytes) {
  if (bytes.size() > kLongestRegistryFile)
    RaiseWithWords(E_FAIL, place.path + ": It would be longer than 1 MiB");
  const int error = MakeDirectories(place);
  return error != 0 ? error : ReplaceRegistryBytes(place.path, bytes);
}

// What a file lost: as Save, for the file that has it.
void SaveWithout(const RegistryPlace& place, const std::string& bytes) {
  if (place.kind == RegistryPlaceKind::kInstalled)
    RaiseWithWords(E_FAIL, place.path + ": It belongs to the installation and is never changed");
  const int error = Save(place, bytes);
  if (error != 0) RaiseWithWords(E_FAIL, place.path + ": " + SystemErrorText(error));
}

}  // namespace

RegistryLayer ReadRegistryLayer(const std::string& path) {
  RegistryLayer layer;
  layer.path = path;
  const RegistryBytes read = ReadRegistryBytes(path);
  layer.damage = read.problem;
  if (!layer.damage.empty()) return layer;
  RegistryContent content = ParseRegistryFile(read.bytes);
  layer.damage = std::move(content.damage);
  layer.entries = std::move(content.entries);
  layer.named = std::move(content.named);
  return layer;
}

WideString FindInRegistry(const std::vector<RegistryPlace>& places, const WideString& key) {
  for (const RegistryPlace& place : places) {
    WideString value = FindRegistryValue(ReadRegistryLayer(place.path).entries, key);
    if (!value.IsNull()) return value;
  }
  return WideString();
}

WideString FindInRegistry(const std::vector<RegistryPlace>& places, const WideString& key,
                          const WideString& name) {
  if (name.IsEmpty()) return FindInRegistry(places, key);
  for (const RegistryPlace& place : places) {
    WideString value = FindNamedRegistryValue(ReadRegistryLayer(place.path).named, key, name);
    if (!value.IsNull()) return value;
  }
  return WideString();
}

std::string WriteToRegistry(const std::vector<RegistryPlace>& places, const WideString& key,
                            const WideString& value) {
  return WriteToRegistry(places, {{key, WideString(), value.IsNull() ? WideString(u"") : value}});
}

std::string WriteToRegistry(const std::vector<RegistryPlace>& places,
                            const std::vector<RegistryValue>& values) {
  for (const RegistryValue& value : values) RequireWritable(value);
  std::string reasons;
  for (const RegistryPlace& place : places) {
    if (place.kind == RegistryPlaceKind::kInstalled) continue;
    const SoundFile file = LoadSound(place.path);
    const int error = Save(place, WithValues(file.bytes, values));
    if (error == 0) return place.path;
    const std::string reason = place.path + ": " + SystemErrorText(error);
    // A file that has the key already would hide the value in the next one.
    const bool hides = std::any_of(values.begin(), values.end(),
                                   [&](const RegistryValue& value) { return file.Has(value); });
    const bool mayPassOver = place.kind != RegistryPlaceKind::kNamed && IsOutOfReach(error) && !hides;
    if (!mayPassOver) RaiseWithWords(E_FAIL, reason);
    reasons += (reasons.empty() ? "" : "; ") + reason;
  }
  RaiseWithWords(E_FAIL, "No registry file can be written: " + reasons);
}

std::string RemoveFromRegistry(const std::vector<RegistryPlace>& places, const WideString& key) {
  RequireKey(key);
  for (const RegistryPlace& place : places) {
    const SoundFile file = LoadSound(place.path);
    if (!file.Has(key)) continue;
    SaveWithout(place, WithoutRegistryValue(file.bytes, key));
    return place.path;
  }
  return {};
}

std::string RemoveKeysFromRegistry(const std::vector<RegistryPlace>& places,
                                   const std::vector<WideString>& keys) {
  for (const WideString& key : keys) RequireKey(key);
  for (const RegistryPlace& place : places) {
    const SoundFile file = LoadSound(place.path);
    std::string left = file.bytes;
    for (const WideString& key : keys) left = WithoutRegistryKey(left, key);
    if (left == file.bytes) continue;
    SaveWithout(place, left);
    return place.path;
  }
  return {};
}

}  // namespace qv

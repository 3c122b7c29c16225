#include "qvscriptwells/registry.h"

#include <cstdlib>
#include <new>

#include "qvscriptwells/com_error.h"
#include "registry/registry_layers.h"

namespace qv {
namespace {

constexpr const char* kBelowConfigDirectory = "/quorvane/registry.reg";
constexpr const char* kAdministratorsFile = QV_ADMINISTRATORS_REGISTRY;
constexpr const char* kInstalledFile = QV_INSTALLED_REGISTRY;

// Empty if the variable is not set, or if the program runs with another user's rights (setuid).
std::string Variable(const char* name) {
  const char* text = secure_getenv(name);
  return text != nullptr ? text : std::string();
}

bool IsAbsolute(const std::string& path) noexcept {
  return !path.empty() && path.front() == '/';
}

std::string UserConfigDirectory() {
  std::string directory = Variable("XDG_CONFIG_HOME");
  if (IsAbsolute(directory)) return directory;
  directory = Variable("HOME");
  return IsAbsolute(directory) ? directory + "/.config" : std::string();
}

std::vector<RegistryPlace> Places() {
  std::vector<RegistryPlace> places;
  const std::string named = Variable("QV_REGISTRY");
  if (!named.empty()) places.push_back({named, RegistryPlaceKind::kNamed});
  const std::string config = UserConfigDirectory();
  if (!config.empty()) places.push_back({config + kBelowConfigDirectory, RegistryPlaceKind::kUser});
  places.push_back({kAdministratorsFile, RegistryPlaceKind::kAdministrator});
  places.push_back({kInstalledFile, RegistryPlaceKind::kInstalled});
  return places;
}

}  // namespace

std::vector<RegistryLayer> ReadRegistry() {
  std::vector<RegistryLayer> layers;
  for (const RegistryPlace& place : Places()) layers.push_back(ReadRegistryLayer(place.path));
  return layers;
}

// Lack of memory must not look like a missing value.
WideString ReadRegistryValue(const WideString& key) {
  return ReadRegistryValue(key, WideString());
}

WideString ReadRegistryValue(const WideString& key, const WideString& name) {
  try {
    return FindInRegistry(Places(), key, name);
  } catch (const std::bad_alloc&) {
    _com_raise_error(E_OUTOFMEMORY);
  }
}

std::string WriteRegistryValues(const std::vector<RegistryValue>& values) {
  return WriteToRegistry(Places(), values);
}

std::string RemoveRegistryKeys(const std::vector<WideString>& keys) {
  return RemoveKeysFromRegistry(Places(), keys);
}

std::string WriteRegistryValue(const WideString& key, const WideString& value) {
  return WriteToRegistry(Places(), key, value);
}

std::string RemoveRegistryValue(const WideString& key) {
  return RemoveFromRegistry(Places(), key);
}

}  // namespace qv

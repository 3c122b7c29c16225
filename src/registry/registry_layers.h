// The registry over a given list of files. qvscriptwells/registry.h says what each function does.
#pragma once

#include <string>
#include <vector>

#include "qvscriptwells/registry.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

enum class RegistryPlaceKind {
  kNamed,          // named by QV_REGISTRY, so never skipped if it cannot be written
  kUser,           // its directory is created if missing
  kAdministrator,  // the same, readable for all
  kInstalled,      // never changed, since the next installation replaces it
};

struct RegistryPlace {
  std::string path;  // UTF-8
  RegistryPlaceKind kind;
};

RegistryLayer ReadRegistryLayer(const std::string& path);
WideString FindInRegistry(const std::vector<RegistryPlace>& places, const WideString& key);
WideString FindInRegistry(const std::vector<RegistryPlace>& places, const WideString& key,
                          const WideString& name);
std::string WriteToRegistry(const std::vector<RegistryPlace>& places, const WideString& key,
                            const WideString& value);
std::string WriteToRegistry(const std::vector<RegistryPlace>& places,
                            const std::vector<RegistryValue>& values);
std::string RemoveFromRegistry(const std::vector<RegistryPlace>& places, const WideString& key);
std::string RemoveKeysFromRegistry(const std::vector<RegistryPlace>& places,
                                   const std::vector<WideString>& keys);

}  // namespace qv

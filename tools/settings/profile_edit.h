// Changes of the file of profiles that keep everything else in it: comments, order, line ends.
#pragma once

#include <string>

#include "tools/settings/profile.h"

namespace qv::cli {

// What is changed: a setting of a profile; without a profile, the default one.
struct ProfilePlace {
  std::string profile;
  std::string key;
};

// The text with this value, which the profile may have already. A profile that is missing is added at the
// end. Throws Failure (kLocal) as ParseProfiles does for either text, and if the text is TOML of a form that
// this cannot change.
std::string WithValue(const std::string& path, const std::string& text, const ProfilePlace& place,
                      const std::string& value);

// The text without the value, and without the rest of its line. Throws the same; the value has to be there.
std::string WithoutValue(const std::string& path, const std::string& text, const ProfilePlace& place);

}  // namespace qv::cli

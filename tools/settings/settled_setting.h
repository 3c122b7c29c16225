// The settings of one command, and where each comes from.
#pragma once

#include <string>

namespace qv::cli {

enum class SettingSource { kDefault, kFlag, kVariable, kProfile, kFile };

struct SettledSetting {
  std::string key;
  std::string value;  // as it may be shown; empty: none
  SettingSource source = SettingSource::kDefault;
  std::string name;   // of the flag, the variable or the profile
  std::string file;   // for kProfile and kFile
  unsigned line = 0;  // for kProfile and kFile
};

}  // namespace qv::cli

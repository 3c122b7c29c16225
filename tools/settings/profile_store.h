// The user's file of profiles on the disk.
#pragma once

#include <string>

#include "tools/settings/profile.h"

namespace qv::cli {

// scriptwells/config.toml below $XDG_CONFIG_HOME, else below ~/.config. Empty if both variables are missing
// or not absolute.
std::string ProfilePath();

// The same. Throws Failure (kLocal) if it is empty.
std::string RequireProfilePath();

// The text of the file at `path`; empty if there is none. Throws Failure (kLocal) if it cannot be read, is no
// regular file or longer than 1 MB, or if somebody else can write to it: its commands are run.
std::string ReadProfileText(const std::string& path);

// The file of ProfilePath.
ProfileFile ReadProfiles();

// Replaces the file by a new one with mode 0600, and makes its directories (0700). Throws Failure (kLocal);
// the old file is then unchanged.
void WriteProfileText(const std::string& path, const std::string& text);

}  // namespace qv::cli

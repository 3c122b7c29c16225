// What the commands below `config` have in common.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/input/parsed_options.h"
#include "tools/settings/profile_edit.h"

namespace qv::cli {

// What `config set` and `config unset` change. Throws Failure (kUsage, kLocal) if no profile is given.
ProfilePlace PlaceOf(const ProfileFile& file, const ConfigOptions& options);

// Prints the path of the file of profiles. Throws Failure (kLocal).
void PrintPath(const std::string& path, const ConfigOptions& options, std::ostream& out);

}  // namespace qv::cli

// What the completion scripts of shells (shells/) have to know of the program, as code that is added to their
// end.
#pragma once

#include <string>

#include "tools/manual/command_texts.h"

namespace qv::cli {

// `objects` are the names of object_names.h.
std::string BashTables(const CommandText& program, const std::vector<std::string>& objects);
std::string ZshTables(const CommandText& program, const std::vector<std::string>& objects);
std::string FishTables(const CommandText& program, const std::vector<std::string>& objects);

}  // namespace qv::cli

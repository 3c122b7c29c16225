// What the pages say beside the help: tables whose rows belong to commands with certain options.
#pragma once

#include <string>

#include "tools/manual/command_texts.h"

namespace qv::cli {

// Each is a list of items in roff; empty if no row belongs to the command.
std::string ParameterTypes(const CommandText& command);
std::string OutputFormats(const CommandText& command);
std::string ExitStatuses(const CommandText& command);
// With the variables that the command's options have.
std::string Variables(const CommandText& command);
std::string Files(const CommandText& command);

// The names of the types of parameters.
std::vector<std::string> ParameterTypeNames();

}  // namespace qv::cli

// Suggestions for unknown arguments of the command line.
#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace qv::cli {

// The innermost command that was parsed below `root`, or `root` itself.
const CLI::App& InnermostCommand(const CLI::App& root);

// " (did you mean --server?)" for the first word that `root` could not parse: the closest option or command.
// Empty if none is close.
std::string MeantWord(const CLI::App& root);

// The same for a word that should be the name of a command below `command`.
std::string MeantCommand(const CLI::App& command, const std::string& word);

}  // namespace qv::cli

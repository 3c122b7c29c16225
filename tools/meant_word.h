// What was probably meant by a word of the command line that nobody expected.
#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace qv::cli {

// The last of the commands that were parsed below `root`, or `root` itself.
const CLI::App& InnermostCommand(const CLI::App& root);

// " (did you mean --server?)" for the first word that the parsing of `root` left over: the nearest option of
// its command, or the nearest command where one could stand. Empty when nothing is near.
std::string MeantWord(const CLI::App& root);

// The same for a word that should be the name of a command below `command`.
std::string MeantCommand(const CLI::App& command, const std::string& word);

}  // namespace qv::cli

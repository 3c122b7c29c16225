// Completes what is typed at the prompt of the shell.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

struct CompletionNames {
  std::vector<std::string> parameters;
  std::vector<std::string> columns;  // of the last table
};

struct Completion {
  std::size_t start = 0;           // where the word begins that is replaced
  std::vector<std::string> words;  // sorted, all different, and safe to show
  std::string after;               // follows the word if there is only one, such as " "
};

// `line` is the text before the cursor. In commands: their names and arguments, with files of this machine.
// In scripts (also in the second line of one: `isOpen`): parameters after "parameters.", otherwise columns.
Completion Complete(const std::string& line, bool isOpen, const CompletionNames& names);

// What all of them begin with, in whole characters.
std::string CommonStart(const std::vector<std::string>& words);

}  // namespace qv::cli

#include "tools/options/meant_word.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "tools/report/typed_name.h"

namespace qv::cli {

namespace {

std::string Question(const std::string& word, const std::string& meant) {
  return meant.empty() || meant == word ? "" : " (did you mean " + meant + "?)";
}

// Hidden commands have no group.
std::vector<std::string> CommandNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::App* one : command.get_subcommands({}))
    if (!one->get_group().empty()) names.push_back(one->get_name());
  return names;
}

// Without dashes, which would make short names similar.
std::vector<std::string> OptionNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    names.insert(names.end(), option->get_lnames().begin(), option->get_lnames().end());
    names.insert(names.end(), option->get_snames().begin(), option->get_snames().end());
  }
  return names;
}

// For "--servr" and "-servr=http://h".
std::string MeantOption(const CLI::App& command, const std::string& word) {
  const std::string option = word.substr(0, word.find('='));
  const std::size_t start = std::min(option.find_first_not_of('-'), option.size());
  const std::string meant = ClosestName(option.substr(start), OptionNames(command));
  return meant.empty() ? "" : Question(option, (meant.size() == 1 ? "-" : "--") + meant);
}

}  // namespace

const CLI::App& InnermostCommand(const CLI::App& root) {
  const CLI::App* command = &root;
  while (!command->get_subcommands().empty()) command = command->get_subcommands().back();
  return *command;
}

std::string MeantWord(const CLI::App& root) {
  const std::vector<std::string> left = root.remaining(true);
  if (left.empty()) return "";
  const CLI::App& command = InnermostCommand(root);
  const std::string& word = left.front();
  if (word.rfind('-', 0) != 0) return MeantCommand(command, word);
  return MeantOption(command, word);
}

std::string MeantCommand(const CLI::App& command, const std::string& word) {
  return Question(word, ClosestName(word, CommandNames(command)));
}

}  // namespace qv::cli

#include "tools/meant_word.h"

#include <CLI/CLI.hpp>

#include "tools/closest_name.h"

namespace qv::cli {

namespace {

std::string Question(const std::string& word, const std::vector<std::string>& candidates) {
  const std::string meant = ClosestName(word, candidates);
  return meant.empty() || meant == word ? "" : " (did you mean " + meant + "?)";
}

// Hidden ones have no group.
std::vector<std::string> CommandNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::App* one : command.get_subcommands({}))
    if (!one->get_group().empty()) names.push_back(one->get_name());
  return names;
}

std::vector<std::string> OptionNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    for (const std::string& name : option->get_snames()) names.push_back("-" + name);
  }
  return names;
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
  return Question(word.substr(0, word.find('=')), OptionNames(command));
}

std::string MeantCommand(const CLI::App& command, const std::string& word) {
  return Question(word, CommandNames(command));
}

}  // namespace qv::cli

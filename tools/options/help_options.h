// `scriptwells help [COMMAND...]` and `scriptwells version`.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}  // namespace CLI

namespace qv::cli {

class HelpArguments {
 public:
  // Adds both commands to `app`, which owns them.
  explicit HelpArguments(CLI::App& app);
  HelpArguments(const HelpArguments&) = delete;
  HelpArguments& operator=(const HelpArguments&) = delete;

  bool AsksForHelp() const;
  bool AsksForVersion() const;
  // The help of the given command, or of the program. Empty if there is no such command.
  std::string Text() const;
  // The error message for an unknown command.
  std::string Wrong() const;

 private:
  // The innermost known command, its path, and the first unknown word.
  const CLI::App* Find(std::string& path, std::string& unknown) const;

  CLI::App& app_;
  CLI::App* help_;
  CLI::App* version_;
  std::vector<std::string> words_;
};

}  // namespace qv::cli

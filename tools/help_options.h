// `scriptwells help [COMMAND...]` and `scriptwells version`, for those who look for commands before options.
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
  // The help of the command that was named, or of the program. Empty when there is no such command.
  std::string Text() const;
  // What is wrong then.
  std::string Wrong() const;

 private:
  // As far as the words name commands, and the word that does not.
  const CLI::App* Find(std::string& path, std::string& unknown) const;

  CLI::App& app_;
  CLI::App* help_;
  CLI::App* version_;
  std::vector<std::string> words_;
};

}  // namespace qv::cli

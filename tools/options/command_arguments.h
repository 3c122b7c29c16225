// What the command-line arguments of all commands have in common.
#pragma once

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

// A class of this kind adds its command to the parser, which owns it. Parsing sets the options of the object,
// so that it cannot move.
class CommandArguments {
 public:
  CommandArguments(const CommandArguments&) = delete;
  CommandArguments& operator=(const CommandArguments&) = delete;

  // Whether the command is the one on the command line.
  bool Parsed() const;

 protected:
  explicit CommandArguments(CLI::App* command) : command_(command) {}
  ~CommandArguments() = default;

  CLI::App* const command_;
};

}  // namespace qv::cli

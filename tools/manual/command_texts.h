// The commands and options of the program as plain texts, from which pages and completions are made.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}  // namespace CLI

namespace qv::cli {

// What the value of an option or argument is, as far as a shell can offer some.
enum class ValueKind {
  kNone,  // a flag
  kText,  // one of `choices`, or anything if there are none
  kFile,
  kDirectory,
  kParameter,  // name=type:value
  kProfile,
  kTopic,   // a command and those below it
  kObject,  // an object of `describe`, or object and member
};

// An option, or an argument: one without names.
struct OptionText {
  std::vector<std::string> names;  // "-o" and "--output"
  std::string value;               // "FORMAT"; empty for a flag
  ValueKind kind = ValueKind::kNone;
  std::vector<std::string> choices;
  std::string range;  // "0 to 65535"
  std::string description;
  std::string variable;
  std::string standard;  // the value without the option
  std::vector<std::string> excludes;
  bool required = false;
  bool repeated = false;

  bool IsArgument() const { return names.empty(); }
};

struct CommandText {
  std::string path;  // "scriptwells registry set"
  std::string description;
  std::string examples;
  std::string notes;
  std::vector<OptionText> options;
  std::vector<CommandText> commands;

  // The last word of the path.
  std::string Name() const { return path.substr(path.rfind(' ') + 1); }
};

// The program with all commands below it; hidden ones are left out.
CommandText CommandTextOf(CLI::App& program);

// The command and all below it, from the top.
std::vector<const CommandText*> AllCommands(const CommandText& top);

// Whether the command, or one below it, has an option of this name.
bool HasOption(const CommandText& command, const std::string& name);

// The options, or the arguments, of a command itself.
std::vector<const OptionText*> OptionsOf(const CommandText& command);
std::vector<const OptionText*> ArgumentsOf(const CommandText& command);

// Values that a shell can offer: the choices, else the usual value if it is a name.
std::vector<std::string> Suggestions(const OptionText& option);

// The start of a description, for lists with one line each.
std::string ShortDescription(const std::string& description);

}  // namespace qv::cli

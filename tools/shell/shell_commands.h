// The commands of the shell.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

enum class ShellVerb {
  kHelp,
  kLanguage,
  kOpen,
  kOutput,
  kParam,
  kParams,
  kQuit,
  kSave,
  kSession,
  kTime,
  kTrace,
  kUnparam,
  kUpload,
};

// What completion offers for an argument.
enum class ArgumentKind {
  kNone,
  kCommand,
  kFile,
  kFormat,
  kParameterName,
  kSwitch,
  kSwitchOrFile,
  kTypedValue,
  kUpload
};

struct ShellCommandRow {
  ShellVerb verb;
  const char* name;      // without ":"
  const char* argument;  // as help shows it; empty: none
  bool isNeeded;         // the argument
  ArgumentKind kind;
  const char* help;
};

// In the order of the alphabet.
const std::vector<ShellCommandRow>& ShellCommands();

struct TypedCommand {
  ShellVerb verb = ShellVerb::kHelp;
  std::string argument;  // may be empty
};

// ":time on", also shortened (":ti on") where that is clear. Throws Failure (kUsage).
TypedCommand ParseShellCommand(const std::string& line);

// The command of a name that may be shortened. Throws Failure (kUsage).
const ShellCommandRow& FindShellCommand(const std::string& name);

// "on" or "off". Throws Failure (kUsage).
bool IsOn(const std::string& argument);

// All commands, or one; with line ends.
std::string ShellHelp(const std::string& name = "");

}  // namespace qv::cli

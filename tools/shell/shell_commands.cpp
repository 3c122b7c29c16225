#include "tools/shell/shell_commands.h"

#include <algorithm>

#include "tools/report/failure.h"
#include "tools/report/typed_name.h"

namespace qv::cli {

namespace {

constexpr std::size_t kHelpColumn = 28;
constexpr char kBlanks[] = " \t\r";

constexpr char kScriptHelp[] =
    R"(Everything else is a script. It may have several lines: it is sent when its brackets, strings and comments
are closed. In other languages than JavaScript, a line that ends with \ goes on in the next one. :{ and :},
each in its own line, enclose a script of any form. Ctrl-C cancels a running script, or clears the line;
Ctrl-D ends the shell. TAB completes. A line that begins with a blank is not in the history.
)";

[[noreturn]] void Refuse(const std::string& message) {
  throw Failure(ExitStatus::kUsage, message);
}

bool BeginsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

std::string Trimmed(const std::string& text) {
  const std::size_t start = text.find_first_not_of(kBlanks);
  return start == std::string::npos ? "" : text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
}

// The value of a parameter keeps the blanks at its end.
std::string ArgumentIn(const std::string& rest, const ShellCommandRow& row) {
  if (row.kind != ArgumentKind::kTypedValue) return Trimmed(rest);
  const std::size_t start = rest.find_first_not_of(kBlanks);
  return start == std::string::npos ? "" : rest.substr(start);
}

std::string UsageOf(const ShellCommandRow& row) {
  return ":" + std::string(row.name) + (*row.argument == '\0' ? "" : " ") + row.argument;
}

std::string HelpLine(const ShellCommandRow& row) {
  std::string line = "  " + UsageOf(row);
  line.resize(std::max(line.size() + 1, kHelpColumn), ' ');
  return line + row.help + "\n";
}

[[noreturn]] void RefuseName(const std::string& name) {
  std::vector<std::string> names;
  for (const ShellCommandRow& row : ShellCommands()) names.emplace_back(row.name);
  const std::string meant = ClosestName(name, names);
  Refuse("no command :" + name + (meant.empty() ? "; :help lists all" : "; did you mean :" + meant + "?"));
}

}  // namespace

const std::vector<ShellCommandRow>& ShellCommands() {
  using Kind = ArgumentKind;
  static const std::vector<ShellCommandRow> kRows = {
      {ShellVerb::kHelp, "help", "[COMMAND]", false, Kind::kCommand, "this list"},
      {ShellVerb::kLanguage, "language", "[NAME]", false, Kind::kNone,
       "shows or sets the language of scripts"},
      {ShellVerb::kOpen, "open", "FILE", true, Kind::kFile, "runs a script or script document"},
      {ShellVerb::kOutput, "output", "[FORMAT]", false, Kind::kFormat,
       "shows or sets how answers are printed: text, table, csv, json"},
      {ShellVerb::kParam, "param", "NAME=TYPE:VALUE", true, Kind::kTypedValue,
       "sets a parameter of the scripts that follow"},
      {ShellVerb::kParams, "params", "", false, Kind::kNone, "lists the parameters"},
      {ShellVerb::kQuit, "quit", "", false, Kind::kNone, "closes the session and ends, as Ctrl-D does"},
      {ShellVerb::kSave, "save", "DIR|FILE", true, Kind::kFile,
       "downloads the last answer, the URL of a file, into DIR; or writes the answer into a new FILE, as CSV "
       "for "
       "*.csv and as JSON for *.json"},
      {ShellVerb::kSession, "session", "", false, Kind::kNone, "shows the session"},
      {ShellVerb::kTime, "time", "[on|off]", false, Kind::kSwitch, "prints how long each script takes"},
      {ShellVerb::kTrace, "trace", "[on|off|FILE]", false, Kind::kSwitchOrFile,
       "writes what is sent and received to standard error or FILE, without secrets"},
      {ShellVerb::kUnparam, "unparam", "NAME", true, Kind::kParameterName, "removes a parameter"},
      {ShellVerb::kUpload, "upload", "NAME=FILE", true, Kind::kUpload,
       "sets a parameter to a file, which is uploaded for each script"},
  };
  return kRows;
}

const ShellCommandRow& FindShellCommand(const std::string& name) {
  const ShellCommandRow* found = nullptr;
  for (const ShellCommandRow& row : ShellCommands()) {
    if (name == row.name) return row;
    if (name.empty() || !BeginsWith(row.name, name)) continue;
    if (found != nullptr)
      Refuse(":" + name + " is short for several commands, such as :" + found->name + " and :" + row.name);
    found = &row;
  }
  if (found == nullptr) RefuseName(name);
  return *found;
}

TypedCommand ParseShellCommand(const std::string& line) {
  const std::size_t start = line.find(':') + 1;
  const std::size_t end = std::min(line.find_first_of(kBlanks, start), line.size());
  const ShellCommandRow& row = FindShellCommand(line.substr(start, end - start));
  TypedCommand command = {row.verb, ArgumentIn(line.substr(end), row)};
  if (*row.argument == '\0' && !command.argument.empty()) Refuse(UsageOf(row) + " takes nothing more");
  if (row.isNeeded && command.argument.empty()) Refuse("it is " + UsageOf(row));
  return command;
}

bool IsOn(const std::string& argument) {
  if (argument != "on" && argument != "off") Refuse("it is on or off, not '" + argument + "'");
  return argument == "on";
}

std::string ShellHelp(const std::string& name) {
  if (!name.empty()) return HelpLine(FindShellCommand(name.substr(name.front() == ':' ? 1 : 0)));
  std::string text;
  for (const ShellCommandRow& row : ShellCommands()) text += HelpLine(row);
  return text + "\n" + kScriptHelp;
}

}  // namespace qv::cli

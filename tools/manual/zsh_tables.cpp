#include <algorithm>

#include "tools/manual/completion.h"
#include "tools/manual/page_tables.h"
#include "tools/manual/shell_words.h"

namespace qv::cli {

namespace {

// With a backslash before each of these characters, which mean something to _arguments and _describe.
std::string Escaped(const std::string& text, const std::string& special) {
  std::string escaped;
  for (const char character : text)
    escaped += (special.find(character) == std::string::npos ? "" : "\\") + std::string(1, character);
  return escaped;
}

std::string FunctionName(const std::string& path) {
  std::string name = "_" + path;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

// What _arguments does for a value.
std::string Action(const OptionText& option) {
  switch (option.kind) {
    case ValueKind::kFile:
      return "_files";
    case ValueKind::kDirectory:
      return "_files -/";
    case ValueKind::kParameter:
      return "_scriptwells_parameter";
    case ValueKind::kProfile:
      return "_scriptwells_profiles";
    case ValueKind::kTopic:
      return "_scriptwells_topic";
    case ValueKind::kObject:
      return "_scriptwells_object";
    case ValueKind::kNone:
    case ValueKind::kText:
      break;
  }
  const std::vector<std::string> choices = Suggestions(option);
  // The list is code in the code of a specification, where ":" ends it.
  const auto escaped = [](const std::string& word) { return Escaped(word, "\\: ()'\"`$<>|&;*?[]~#!"); };
  return choices.empty() ? " " : "(" + JoinedWords(choices, " ", escaped) + ")";
}

std::string ValueSpec(const OptionText& option) {
  if (option.kind == ValueKind::kNone) return "";
  return ":" + Escaped(option.value, "\\:") + ":" + Action(option);
}

// "-o+" and "--output=": the value may follow at once or as the next word.
std::string NameSpec(const std::string& name, bool hasValue) {
  if (!hasValue) return name;
  return name + (name.size() == 2 ? "+" : "=");
}

// One specification for each name, all of which leave out the others.
std::vector<std::string> OptionSpecs(const OptionText& option) {
  std::vector<std::string> others = option.excludes;
  if (!option.repeated) others.insert(others.end(), option.names.begin(), option.names.end());
  const auto plain = [](const std::string& word) { return word; };
  const std::string start =
      (others.empty() ? "" : "(" + JoinedWords(others, " ", plain) + ")") + (option.repeated ? "*" : "");
  const std::string end =
      "[" + Escaped(ShortDescription(option.description), "\\[]") + "]" + ValueSpec(option);
  std::vector<std::string> specs;
  for (const std::string& name : option.names) {
    std::string spec = start;
    spec.append(NameSpec(name, option.kind != ValueKind::kNone)).append(end);
    specs.push_back(Quoted(spec));
  }
  return specs;
}

std::vector<std::string> ArgumentSpecs(const CommandText& command) {
  std::vector<std::string> specs;
  for (const OptionText* option : OptionsOf(command))
    for (const std::string& spec : OptionSpecs(*option)) specs.push_back(spec);
  for (const OptionText* argument : ArgumentsOf(command))
    specs.push_back(Quoted((argument->repeated ? "*" : "") + ValueSpec(*argument)));
  if (!command.commands.empty()) specs.insert(specs.end(), {"'1: :->command'", "'*:: :->below'"});
  return specs;
}

std::string Function(const CommandText& command) {
  std::string function = "\n" + FunctionName(command.path) +
                         "() {\n    local curcontext=$curcontext state\n" +
                         "    local -a line\n    local -A opt_args\n    _arguments -C -s -S";
  for (const std::string& spec : ArgumentSpecs(command)) function += " \\\n        " + spec;
  if (command.commands.empty()) return function + "\n}\n";
  const std::string path = Quoted(command.path);
  return function + " && return\n    case $state in\n        command) _scriptwells_describe_commands " +
         path + " ;;\n        below) _scriptwells_below " + path + " ;;\n    esac\n}\n";
}

std::string CommandTable(const CommandText& program) {
  std::string table;
  for (const CommandText* command : AllCommands(program)) {
    std::vector<std::string> rows;
    for (const CommandText& below : command->commands)
      rows.push_back(Quoted(below.Name() + ":" + ShortDescription(below.description)));
    if (!rows.empty())
      table += "        " + Quoted(command->path) + ") commands=(" +
               JoinedWords(rows, " ", [](const std::string& row) { return row; }) + ") ;;\n";
  }
  return "\n_scriptwells_commands() {\n    case $1 in\n" + table + "        *) return 1 ;;\n    esac\n}\n";
}

// The first completion loads this file as a function, which then has to complete.
constexpr char kStart[] = R"(
if [[ $funcstack[1] = _scriptwells ]]; then
    _scriptwells "$@"
else
    compdef _scriptwells scriptwells
fi
)";

}  // namespace

std::string ZshTables(const CommandText& program, const std::vector<std::string>& objects) {
  std::string tables = CommandTable(program) + "\n_scriptwells_types() {\n    types=(" +
                       QuotedWords(ParameterTypeNames()) + ")\n}\n\n_scriptwells_objects() {\n    objects=(" +
                       QuotedWords(ObjectsOf(objects)) + ")\n    members=(" +
                       QuotedWords(MembersOf(objects)) + ")\n}\n";
  for (const CommandText* command : AllCommands(program)) tables += Function(*command);
  return tables + kStart;
}

}  // namespace qv::cli

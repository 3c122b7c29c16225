#include <map>

#include "tools/manual/completion.h"
#include "tools/manual/page_tables.h"
#include "tools/manual/shell_words.h"

namespace qv::cli {

namespace {

std::vector<std::string> CommandNames(const CommandText& command) {
  std::vector<std::string> names;
  for (const CommandText& below : command.commands) names.push_back(below.Name());
  return names;
}

std::vector<std::string> OptionNames(const CommandText& command) {
  std::vector<std::string> names;
  for (const OptionText* option : OptionsOf(command))
    names.insert(names.end(), option->names.begin(), option->names.end());
  return names;
}

std::string CommandTable(const CommandText& program) {
  std::string table;
  for (const CommandText* command : AllCommands(program))
    table += "        " + Quoted(command->path) + ")\n            commands=(" +
             QuotedWords(CommandNames(*command)) + ")\n            options=(" +
             QuotedWords(OptionNames(*command)) + ") ;;\n";
  return "\n# Sets `commands` and `options` of a command; false if there is none.\n_scriptwells_command() {\n"
         "    commands=()\n    options=()\n    case $1 in\n" +
         table + "        *) return 1 ;;\n    esac\n}\n";
}

// The assignments for a value.
std::string Offer(const OptionText& option) {
  switch (option.kind) {
    case ValueKind::kFile:
      return "kind='file'";
    case ValueKind::kDirectory:
      return "kind='directory'";
    case ValueKind::kParameter:
      return "kind='parameter'";
    case ValueKind::kProfile:
      return "kind='profile'";
    case ValueKind::kTopic:
      return "kind='topic'";
    case ValueKind::kObject:
      return "kind='object'";
    case ValueKind::kNone:
    case ValueKind::kText:
      break;
  }
  const std::vector<std::string> choices = Suggestions(option);
  return choices.empty() ? "kind='text'" : "kind='words' choices=(" + QuotedWords(choices) + ")";
}

using PatternsByOffer = std::map<std::string, std::vector<std::string>>;

// "scriptwells run --output" or, for the first argument, "scriptwells run 1".
void AddPatterns(const CommandText& command, PatternsByOffer& patterns) {
  for (const OptionText* option : OptionsOf(command))
    if (option->kind != ValueKind::kNone)
      for (const std::string& name : option->names)
        patterns[Offer(*option)].push_back(Quoted(command.path + " " + name));
  int number = 0;
  for (const OptionText* argument : ArgumentsOf(command)) {
    const std::string place = argument->repeated ? "'[1-9]*" : std::to_string(++number) + "'";
    patterns[Offer(*argument)].push_back("'" + command.path + " " + place);
  }
}

std::string ValueTable(const CommandText& program) {
  PatternsByOffer patterns;
  for (const CommandText* command : AllCommands(program)) AddPatterns(*command, patterns);
  std::string table;
  for (const auto& [offer, all] : patterns) {
    table += "        ";
    for (const std::string& pattern : all)
      table += (&pattern == &all.front() ? "" : " | \\\n            ") + pattern;
    table += ") " + offer + " ;;\n";
  }
  return "\n# Sets `kind` and `choices` for the value of an option or argument; false if it takes none.\n"
         "_scriptwells_value() {\n    choices=()\n    case $1 in\n" +
         table + "        *) return 1 ;;\n    esac\n}\n";
}

}  // namespace

std::string BashTables(const CommandText& program, const std::vector<std::string>& objects) {
  return CommandTable(program) + ValueTable(program) + "\n_scriptwells_types() {\n    types=(" +
         QuotedWords(ParameterTypeNames()) + ")\n}\n\n_scriptwells_objects() {\n    objects=(" +
         QuotedWords(ObjectsOf(objects)) + ")\n    members=(" + QuotedWords(MembersOf(objects)) + ")\n}\n";
}

}  // namespace qv::cli

#include "tools/manual/completion.h"
#include "tools/manual/page_tables.h"
#include "tools/manual/shell_words.h"

namespace qv::cli {

namespace {

// fish has other rules within single quotes than bash.
std::string FishQuoted(const std::string& text) {
  std::string quoted;
  for (const char character : text)
    quoted += (character == '\'' || character == '\\' ? "\\" : "") + std::string(1, character);
  return "'" + quoted + "'";
}

// Without quotes where fish needs none.
std::string FishWord(const std::string& text) {
  constexpr char kPlain[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_";
  return text.find_first_not_of(kPlain) == std::string::npos ? text : FishQuoted(text);
}

std::string FishWords(const std::vector<std::string>& words) {
  return JoinedWords(words, " ", FishQuoted);
}

// The options of `complete` for a value.
std::string Offer(const OptionText& option) {
  switch (option.kind) {
    case ValueKind::kNone:
      return "";
    case ValueKind::kFile:
      return " -r -F";
    case ValueKind::kDirectory:
      return " -x -a '(__scriptwells_directories)'";
    case ValueKind::kParameter:
      return " -x -a '(__scriptwells_parameter)'";
    case ValueKind::kProfile:
      return " -x -a '(__scriptwells_profiles)'";
    case ValueKind::kTopic:
      return " -x -a '(__scriptwells_topic)'";
    case ValueKind::kObject:
      return " -x -a '(__scriptwells_object)'";
    case ValueKind::kText:
      break;
  }
  const std::vector<std::string> choices = Suggestions(option);
  // fish reads the list as code, so that each word in it is quoted, too.
  return choices.empty() ? " -x" : " -x -a " + FishQuoted(JoinedWords(choices, " ", FishWord));
}

// " -s o -l output"
std::string Names(const OptionText& option) {
  std::string names;
  for (const std::string& name : option.names)
    names += name.size() == 2 ? " -s " + name.substr(1) : " -l " + name.substr(2);
  return names;
}

std::string Line(const std::string& condition, const std::string& rest, const std::string& description) {
  return "complete -c scriptwells -n " + FishQuoted(condition) + rest + " -d " +
         FishQuoted(ShortDescription(description)) + "\n";
}

std::string Lines(const CommandText& command) {
  const std::string path = "\"" + command.path + "\"";
  std::string lines = "\n";
  for (const OptionText* option : OptionsOf(command))
    lines += Line("__scriptwells_at " + path, Names(*option) + Offer(*option), option->description);
  int number = 0;
  for (const OptionText* argument : ArgumentsOf(command)) {
    std::string condition = "__scriptwells_argument " + path;
    condition.append(" ").append(std::to_string(++number)).append(argument->repeated ? "+" : "");
    lines += Line(condition, Offer(*argument), argument->description);
  }
  for (const CommandText& below : command.commands)
    lines += Line("__scriptwells_argument " + path + " 1", " -a " + below.Name(), below.description);
  return lines;
}

// A function that is true for these arguments.
std::string Test(const char* name, const std::vector<std::string>& words) {
  return "\nfunction " + std::string(name) + "\n    contains -- $argv[1] " + FishWords(words) + "\nend\n";
}

std::string List(const char* name, const std::vector<std::string>& words) {
  return "\nfunction " + std::string(name) + "\n    printf '%s\\n' " + FishWords(words) + "\nend\n";
}

std::vector<std::string> Paths(const CommandText& program) {
  std::vector<std::string> paths;
  for (const CommandText* command : AllCommands(program)) paths.push_back(command->path);
  return paths;
}

// "scriptwells run --output"
std::vector<std::string> ValuedOptions(const CommandText& program) {
  std::vector<std::string> options;
  for (const CommandText* command : AllCommands(program))
    for (const OptionText* option : OptionsOf(*command))
      if (option->kind != ValueKind::kNone)
        for (const std::string& name : option->names) options.push_back(command->path + " " + name);
  return options;
}

std::string CommandTable(const CommandText& program) {
  std::string table = "\nfunction __scriptwells_commands\n    switch $argv[1]\n";
  for (const CommandText* command : AllCommands(program)) {
    if (command->commands.empty()) continue;
    table += "        case " + FishQuoted(command->path) + "\n            printf '%s\\t%s\\n'";
    for (const CommandText& below : command->commands)
      table += " " + FishQuoted(below.Name()) + " " + FishQuoted(ShortDescription(below.description));
    table += "\n";
  }
  return table + "    end\nend\n";
}

}  // namespace

std::string FishTables(const CommandText& program, const std::vector<std::string>& objects) {
  std::string tables = Test("__scriptwells_is_command", Paths(program)) +
                       Test("__scriptwells_takes_value", ValuedOptions(program)) + CommandTable(program) +
                       List("__scriptwells_types", ParameterTypeNames()) +
                       List("__scriptwells_objects", ObjectsOf(objects)) +
                       List("__scriptwells_members", MembersOf(objects));
  for (const CommandText* command : AllCommands(program)) tables += Lines(*command);
  return tables;
}

}  // namespace qv::cli

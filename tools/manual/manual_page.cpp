#include "tools/manual/manual_page.h"

#include <algorithm>
#include <cctype>

#include "tools/manual/page_tables.h"
#include "tools/manual/roff.h"

namespace qv::cli {

namespace {

// A title and its text; nothing if there is no text.
std::string SectionWith(const char* title, const std::string& text) {
  return text.empty() ? "" : Section(title) + text;
}

// Without the point and in lower case, as lists of pages show it.
std::string Purpose(std::string description) {
  if (!description.empty() && description.back() == '.') description.pop_back();
  if (!description.empty())
    description.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(description.front())));
  return description;
}

std::string ArgumentUsage(const OptionText& argument) {
  const std::string usage = Italic(argument.value) + (argument.repeated ? "..." : "");
  return argument.required ? usage : "[" + usage + "]";
}

std::string Synopsis(const CommandText& command) {
  std::string line = Bold(command.path) + " [" + Italic("OPTIONS") + "]";
  for (const OptionText* argument : ArgumentsOf(command)) line += " " + ArgumentUsage(*argument);
  if (!command.commands.empty()) line += " " + Italic("COMMAND");
  return RoffLines(line);
}

std::string BelowCommands(const CommandText& command) {
  std::string items;
  for (const CommandText& below : command.commands)
    items +=
        Item(Bold(below.Name()), Prose(below.description + "; see ") + Bold(PageName(below.path)) + "(1)");
  return items;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& word : words) list += (list.empty() ? "" : ", ") + Bold(word);
  return list;
}

// What follows from the option's definition, as sentences after its description.
std::string Limits(const OptionText& option) {
  std::string limits;
  if (!option.choices.empty()) limits += " One of " + Joined(option.choices) + ".";
  if (!option.range.empty()) limits += " " + Roff(option.range) + ".";
  if (!option.standard.empty()) limits += " Default: " + Bold(option.standard) + ".";
  if (!option.variable.empty()) limits += " Environment: " + Bold(option.variable) + ".";
  if (!option.excludes.empty()) limits += " Not with " + Joined(option.excludes) + ".";
  return limits;
}

std::string OptionItem(const OptionText& option) {
  std::string head = Joined(option.names);
  if (!option.value.empty()) head += (head.empty() ? "" : " ") + Italic(option.value);
  return Item(head, Prose(option.description) + "." + Limits(option));
}

std::string OptionItems(const CommandText& command) {
  std::string items;
  for (const OptionText* argument : ArgumentsOf(command)) items += OptionItem(*argument);
  for (const OptionText* option : OptionsOf(command)) items += OptionItem(*option);
  return items;
}

// The program itself, the commands above and below, and those beside it.
std::vector<std::string> RelatedPaths(const CommandText& program, const CommandText& command) {
  const std::string above = command.path.substr(0, command.path.rfind(' '));
  std::vector<std::string> paths;
  for (const CommandText* one : AllCommands(program)) {
    const bool beside = one->path.substr(0, one->path.rfind(' ')) == above || one->path == above;
    const bool below = one->path.rfind(command.path + " ", 0) == 0;
    if (one != &command && (beside || below || one == &program)) paths.push_back(one->path);
  }
  return paths;
}

std::string SeeAlso(const CommandText& program, const CommandText& command) {
  std::string list;
  for (const std::string& path : RelatedPaths(program, command))
    list += (list.empty() ? "" : ", ") + Bold(PageName(path)) + "(1)";
  if (HasOption(command, "--server") || !command.commands.empty())
    list += ", " + Bold(program.path + "-protocol") + "(7)";
  return RoffLines(list);
}

// The program's own notes are the exit statuses, which have their section.
std::string Description(const CommandText& program, const CommandText& command) {
  const std::string point = command.description.back() == '.' ? "" : ".";
  return RoffLines(Prose(command.description + point)) +
         (&command == &program ? "" : Paragraphs(command.notes));
}

}  // namespace

std::string PageName(const std::string& path) {
  std::string name = path;
  std::replace(name.begin(), name.end(), ' ', '-');
  return name;
}

std::string PageHeader(const std::string& name, const std::string& section, const std::string& title,
                       const PageMark& mark) {
  std::string upper = name;
  for (char& letter : upper) letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  // Without hyphens and without blanks that fill lines, which neither names nor examples survive.
  return ".TH \"" + Roff(upper) + "\" \"" + section + "\" \"" + mark.date + "\" \"" + Roff(mark.version) +
         "\" \"" + title + "\"\n.nr HY 0\n.ad l\n";
}

std::string ManualPage(const CommandText& program, const CommandText& command, const PageMark& mark) {
  const std::string name = PageName(command.path);
  return PageHeader(name, "1", "User Commands", mark) + Section("NAME") +
         RoffLines(Roff(name) + " \\- " + Roff(Purpose(command.description))) + Section("SYNOPSIS") +
         Synopsis(command) + Section("DESCRIPTION") + Description(program, command) +
         SectionWith("COMMANDS", BelowCommands(command)) + SectionWith("OPTIONS", OptionItems(command)) +
         SectionWith("PARAMETER TYPES", ParameterTypes(command)) +
         SectionWith("OUTPUT FORMATS", OutputFormats(command)) +
         SectionWith("EXIT STATUS", ExitStatuses(command)) + SectionWith("ENVIRONMENT", Variables(command)) +
         SectionWith("FILES", Files(command)) +
         SectionWith("EXAMPLES", command.examples.empty() ? "" : Example(command.examples, 2)) +
         Section("SEE ALSO") + SeeAlso(program, command);
}

}  // namespace qv::cli

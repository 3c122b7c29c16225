#include "tools/manual/command_texts.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <sstream>

#include "tools/options/help_format.h"

namespace qv::cli {

namespace {

constexpr std::size_t kShort = 70;

struct KindRow {
  const char* value;
  ValueKind kind;
};

// By the name that help has for the value.
constexpr KindRow kKinds[] = {{"FILE", ValueKind::kFile},
                              {"ROWS", ValueKind::kFile},
                              {"DIR", ValueKind::kDirectory},
                              {"PROFILE", ValueKind::kProfile},
                              {"NAME=TYPE:VALUE", ValueKind::kParameter},
                              {"COMMAND", ValueKind::kTopic},
                              {"OBJECT", ValueKind::kObject}};

ValueKind KindOf(const std::string& value) {
  if (value.empty()) return ValueKind::kNone;
  for (const KindRow& row : kKinds)
    if (value == row.value) return row.kind;
  return ValueKind::kText;
}

bool IsFlag(const CLI::Option& option) {
  return option.get_items_expected_max() == 0;
}

bool IsRepeated(const CLI::Option& option) {
  return option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll ||
         option.get_items_expected_max() > 1;
}

std::vector<std::string> NamesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

// "csv" and "json" of "{csv,json}".
std::vector<std::string> WordsInBraces(const std::string& text) {
  std::vector<std::string> words;
  std::istringstream list(text.substr(1, text.size() - 2));
  for (std::string word; std::getline(list, word, ',');) words.push_back(word);
  return words;
}

// CLI11 adds them to the name of the value: "FORMAT:{csv,json}", "PORT:0 to 65535".
void ReadLimits(CLI::Option& option, const std::string& typeName, OptionText& text) {
  text.value = typeName;
  std::string limit;
  for (int i = 0; limit.empty(); ++i) try {
      limit = option.get_validator(i)->get_description();
    } catch (const CLI::OptionNotFound&) {
      return;
    }
  text.value = typeName.substr(0, typeName.size() - std::min(limit.size() + 1, typeName.size()));
  if (limit.front() == '{')
    text.choices = WordsInBraces(limit);
  else
    text.range = limit;
}

OptionText OptionTextOf(CLI::Option& option) {
  OptionText text;
  text.names = NamesOf(option);
  text.description = option.get_description();
  text.variable = option.get_envname();
  text.required = option.get_required();
  text.repeated = IsRepeated(option);
  for (const CLI::Option* other : option.get_excludes()) text.excludes.push_back(NamesOf(*other).back());
  if (IsFlag(option)) return text;
  ReadLimits(option, option.get_type_name(), text);
  if (text.IsArgument()) text.value = option.get_name(true);
  text.kind = KindOf(text.value);
  text.standard = option.get_default_str();
  return text;
}

CommandText TextOf(CLI::App& command, const std::string& above) {
  CommandText text;
  text.path = above + command.get_name();
  text.description = command.get_description();
  const HelpTexts help = HelpTextsOf(command);
  text.examples = help.examples;
  text.notes = help.notes;
  for (CLI::Option* option :
       command.get_options([](const CLI::Option* one) { return !one->get_group().empty(); }))
    text.options.push_back(OptionTextOf(*option));
  for (CLI::App* below :
       command.get_subcommands([](const CLI::App* one) { return !one->get_group().empty(); }))
    text.commands.push_back(TextOf(*below, text.path + " "));
  return text;
}

std::vector<const OptionText*> Selected(const CommandText& command, bool arguments) {
  std::vector<const OptionText*> selected;
  for (const OptionText& option : command.options)
    if (option.IsArgument() == arguments) selected.push_back(&option);
  return selected;
}

}  // namespace

CommandText CommandTextOf(CLI::App& program) {
  return TextOf(program, "");
}

std::vector<const CommandText*> AllCommands(const CommandText& top) {
  std::vector<const CommandText*> all = {&top};
  for (const CommandText& command : top.commands)
    for (const CommandText* below : AllCommands(command)) all.push_back(below);
  return all;
}

bool HasOption(const CommandText& command, const std::string& name) {
  for (const CommandText* one : AllCommands(command))
    for (const OptionText& option : one->options)
      if (std::find(option.names.begin(), option.names.end(), name) != option.names.end()) return true;
  return false;
}

std::vector<const OptionText*> OptionsOf(const CommandText& command) {
  return Selected(command, false);
}

std::vector<const OptionText*> ArgumentsOf(const CommandText& command) {
  return Selected(command, true);
}

std::vector<std::string> Suggestions(const OptionText& option) {
  const bool isName =
      !option.standard.empty() && std::isalpha(static_cast<unsigned char>(option.standard.front()));
  if (!option.choices.empty() || !isName) return option.choices;
  return {option.standard};
}

std::string ShortDescription(const std::string& description) {
  std::string text = description;
  for (const char* end : {"; ", " (", ". "}) text = text.substr(0, text.find(end));
  if (text.size() <= kShort) return text;
  return text.substr(0, text.rfind(' ', kShort - 3)) + "...";
}

}  // namespace qv::cli

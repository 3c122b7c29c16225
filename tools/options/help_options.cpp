#include "tools/options/help_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"
#include "tools/options/meant_word.h"

namespace qv::cli {

namespace {

// Helps that are not of one command.
struct Topic {
  const char* name;
  const char* text;
};

constexpr Topic kTopics[] = {{"profiles", kProfilesNotes}};

const char* TopicText(const std::vector<std::string>& words) {
  for (const Topic& topic : kTopics)
    if (words.size() == 1 && words.front() == topic.name) return topic.text;
  return nullptr;
}

const CLI::App* VisibleCommand(const CLI::App& command, const std::string& name) {
  for (const CLI::App* one : command.get_subcommands({}))
    if (one->get_name() == name && !one->get_group().empty()) return one;
  return nullptr;
}

}  // namespace

HelpArguments::HelpArguments(CLI::App& app)
    : app_(app),
      help_(app.add_subcommand("help", "Print the help of a command")),
      version_(app.add_subcommand("version", "Print the version")) {
  help_->add_option("COMMAND", words_, "The command, or profiles; default: the program itself")
      ->type_name("");
  SetHelp(*help_, kHelpExamples, "");
  SetHelp(*version_, "", "");
}

bool HelpArguments::AsksForHelp() const {
  return help_->parsed();
}

bool HelpArguments::AsksForVersion() const {
  return version_->parsed();
}

const CLI::App* HelpArguments::Find(std::string& path, std::string& unknown) const {
  const CLI::App* command = &app_;
  for (const std::string& word : words_) {
    const CLI::App* next = VisibleCommand(*command, word);
    if (next == nullptr) {
      unknown = word;
      return command;
    }
    path += (path.empty() ? "" : " ") + command->get_name();
    command = next;
  }
  return command;
}

std::string HelpArguments::Text() const {
  if (const char* topic = TopicText(words_)) return Reflowed(topic) + "\n";
  std::string path;
  std::string unknown;
  const CLI::App* command = Find(path, unknown);
  if (!unknown.empty()) return "";
  // App::help() would print the help of `help`, the command that was parsed.
  const auto format = std::static_pointer_cast<CLI::Formatter>(command->get_formatter());
  return format->make_help(command, path + (path.empty() ? "" : " ") + command->get_name(),
                           CLI::AppFormatMode::Normal);
}

std::string HelpArguments::Wrong() const {
  std::string path;
  std::string unknown;
  const CLI::App* command = Find(path, unknown);
  return "no command " + unknown + MeantCommand(*command, unknown);
}

}  // namespace qv::cli

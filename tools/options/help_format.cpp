#include "tools/options/help_format.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <sstream>
#include <utility>

namespace qv::cli {

namespace {

constexpr std::size_t kColumns = 100;
constexpr std::size_t kFirstColumn = 30;

// Breaks lines at blanks, so that no line is longer than `columns` unless a word is.
std::string Wrapped(const std::string& text, std::size_t columns) {
  std::string lines;
  std::size_t width = 0;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const bool fits = width + 1 + word.size() <= columns;
    if (!lines.empty()) lines += fits ? ' ' : '\n';
    width = fits && !lines.empty() ? width + 1 + word.size() : word.size();
    lines += word;
  }
  return lines;
}

bool IsText(const std::string& line) {
  return !line.empty() && line.front() != ' ';
}

class HelpFormat : public CLI::Formatter {
 public:
  explicit HelpFormat(HelpTexts texts) : texts_(std::move(texts)) { column_width(kFirstColumn); }

  const HelpTexts& Texts() const { return texts_; }

  std::string make_usage(const CLI::App* app, std::string name) const override {
    const std::string usage = CLI::Formatter::make_usage(app, std::move(name));
    return texts_.examples.empty() ? usage : usage + "\nExamples:\n" + texts_.examples + "\n";
  }
  std::string make_option_desc(const CLI::Option* option) const override {
    return Wrapped(option->get_description(), kColumns - kFirstColumn);
  }
  std::string make_subcommand(const CLI::App* command) const override {
    std::ostringstream out;
    CLI::detail::format_help(out, command->get_display_name(true),
                             Wrapped(command->get_description(), kColumns - kFirstColumn), kFirstColumn);
    return out.str();
  }
  std::string make_footer(const CLI::App*) const override {
    return texts_.notes.empty() ? "" : Reflowed(texts_.notes) + "\n";
  }

 private:
  HelpTexts texts_;
};

}  // namespace

std::string Reflowed(const std::string& text) {
  std::string whole;
  std::string paragraph;
  const auto finish = [&] {
    if (!paragraph.empty()) whole += Wrapped(paragraph, kColumns) + "\n";
    paragraph.clear();
  };
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (IsText(line)) {
      paragraph += line + " ";
      continue;
    }
    finish();
    whole += line + "\n";
  }
  finish();
  if (!whole.empty()) whole.pop_back();
  return whole;
}

void SetHelp(CLI::App& app, const std::string& examples, const std::string& notes) {
  app.formatter(std::make_shared<HelpFormat>(HelpTexts{examples, notes}));
}

HelpTexts HelpTextsOf(const CLI::App& app) {
  const auto format = std::dynamic_pointer_cast<const HelpFormat>(app.get_formatter());
  return format == nullptr ? HelpTexts() : format->Texts();
}

}  // namespace qv::cli

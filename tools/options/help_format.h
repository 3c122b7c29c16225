// The format of help texts: examples, options and notes, in lines of at most 100 columns.
#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace qv::cli {

// Sets the help of `app` and of commands that are added to it later. `examples` and `notes` are lines without
// the last line end; either may be empty.
void SetHelp(CLI::App& app, const std::string& examples, const std::string& notes);

struct HelpTexts {
  std::string examples;
  std::string notes;
};

// What SetHelp set for this command, or for the closest above it.
HelpTexts HelpTextsOf(const CLI::App& app);

// The lines with their paragraphs wrapped; lines that begin with a blank are not changed.
std::string Reflowed(const std::string& text);

}  // namespace qv::cli

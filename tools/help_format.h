// How the help of a command looks: examples first, then options, then what else there is to know, in lines of
// at most 100 columns.
#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace qv::cli {

// For `app` and all commands that are added to it afterwards. `examples` and `notes` are whole lines without
// the last line end; either may be empty.
void SetHelp(CLI::App& app, const std::string& examples, const std::string& notes);

}  // namespace qv::cli

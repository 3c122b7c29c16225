#include "tools/options/shell_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"
#include "tools/options/setting_options.h"

namespace qv::cli {

ShellArguments::ShellArguments(CLI::App& app)
    : CommandArguments(app.add_subcommand("shell", "Run scripts as they are typed, in one session")) {
  SetHelp(*command_, kShellExamples, kShellNotes);
  AddParameters(*command_, shell_);
  command_->add_flag(
      "--local", shell_.local,
      "Run in a service inside this program; nothing else is needed. A script has 5 s and 256 MiB "
      "there. User and password are random");
  AddLanguageSetting(*command_, shell_);
  noHistory_ = command_->add_flag("--no-history", "Neither read nor write the file of the history");
  session_.emplace(*command_, shell_);
  output_.Define(*command_);
}

const char* ShellArguments::Check() {
  const char* wrong = output_.Take(shell_);
  if (wrong == nullptr) wrong = TakeServerOrLocal(*session_, shell_);
  if (wrong == nullptr) wrong = session_->Check();
  if (shell_.local) shell_.usid.clear();  // that of the environment belongs to a server
  shell_.history = noHistory_->count() == 0;
  return wrong;
}

}  // namespace qv::cli

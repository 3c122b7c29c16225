#include "tools/options/session_command_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"

namespace qv::cli {

SessionCommandArguments::SessionCommandArguments(CLI::App& app)
    : CommandArguments(
          app.add_subcommand("session", "Open a session that several commands use, or close it")),
      open_(command_->add_subcommand("open", "Open a session, print its id and leave it open")),
      close_(command_->add_subcommand("close", "Close the session of --usid")) {
  command_->require_subcommand(0, 1);
  SetHelp(*command_, kSessionExamples, kSessionNotes);
  SetHelp(*open_, kSessionOpenExamples, kSessionNotes);
  SetHelp(*close_, kSessionCloseExamples, kSessionNotes);
  opening_.emplace(*open_, options_, SessionKind::kOpened);
  closing_.emplace(*close_, options_, SessionKind::kAdopted);
}

const char* SessionCommandArguments::Check() {
  if (!open_->parsed() && !close_->parsed()) return "no session command given (open or close)";
  options_.verb = open_->parsed() ? SessionVerb::kOpen : SessionVerb::kClose;
  SessionArguments& session = open_->parsed() ? *opening_ : *closing_;
  if (!session.TakeServer()) return "no server given (--server URL)";
  const char* wrong = session.Check();
  if (wrong == nullptr && options_.verb == SessionVerb::kClose && options_.usid.empty())
    return "no session given (--usid ID or SCRIPTWELLS_USID)";
  return wrong;
}

}  // namespace qv::cli

#include "tools/shell_command.h"

#include <unistd.h>

#include <ostream>

#include "scriptwells/version.h"
#include "tools/calling_commands.h"
#include "tools/command_frame.h"
#include "tools/commands.h"
#include "tools/prompt/kept_history.h"
#include "tools/prompt/line_editor.h"
#include "tools/prompt/piped_lines.h"
#include "tools/report/unsafe_characters.h"
#include "tools/shell/excerpt.h"
#include "tools/shell/shell_input.h"
#include "tools/shell_run.h"
#include "tools/system/interrupt.h"
#include "tools/transfer/session_frame.h"

namespace qv::cli {

namespace {

// A person who types, if standard input is a terminal, and the prompt can be seen.
bool IsTyped() {
  return ::isatty(STDIN_FILENO) == 1 && (::isatty(STDOUT_FILENO) == 1 || ::isatty(STDERR_FILENO) == 1);
}

// Reads lines, and runs what they hold.
class Shell {
 public:
  Shell(const ShellOptions& options, ShellRun& run, std::ostream& out, std::ostream& err)
      : options_(options),
        run_(run),
        out_(out),
        err_(err),
        reporter_(err, FormOf(options.json)),
        input_(run.Language()) {}

  // The first failure ends it.
  void RunPiped() {
    try {
      PipedLines lines;
      for (ShellLine line = lines.Next(false); line.kind == ShellLine::Kind::kLine; line = lines.Next(false))
        if (!Run(input_.Add(line.text))) return;
      Run(input_.End());
    } catch (const Failure& failure) {
      Show(failure);
      throw failure.Silent();
    }
  }

  // Until the end of the input, ":quit", or a signal other than SIGINT.
  void RunTyped(const ScriptSession& session) {
    StayAfterInterrupts();
    KeptHistory history(HistoryFile(options_.history ? UsualHistoryFile() : ""));
    history.Learn(session.Secrets());
    LineEditor editor({"scriptwells> ", "        ...> "}, [this](const std::string& line, bool isOpen) {
      return Complete(line, isOpen, run_.Names());
    });
    for (const std::string& entry : history.Load()) editor.Remember(entry);
    for (bool goesOn = true; goesOn;) {
      const ShellLine line = editor.Next(input_.IsOpen());
      if (line.kind == ShellLine::Kind::kEnd) return;
      if (line.kind == ShellLine::Kind::kInterrupted) {
        input_.Drop();
        goesOn = ForgetInterrupt();
        continue;
      }
      goesOn = RunTypedLine(line.text, session, editor, history);
    }
  }

 private:
  // False for the end.
  bool Run(ShellInput::Found found) {
    if (found == ShellInput::Found::kScript) run_.RunScript(input_.Text());
    if (found != ShellInput::Found::kCommand) return true;
    const bool goesOn = run_.RunCommand(ParseShellCommand(input_.Text()));
    input_.SetLanguage(run_.Language());
    return goesOn;
  }

  // A line is remembered before it runs, so that a script that never ends can be changed.
  bool RunTypedLine(const std::string& line, const ScriptSession& session, LineEditor& editor,
                    KeptHistory& history) {
    bool goesOn = true;
    try {
      const ShellInput::Found found = input_.Add(line);
      const bool isWhole = found == ShellInput::Found::kCommand || found == ShellInput::Found::kScript;
      if (isWhole) editor.Remember(input_.Typed());
      if (isWhole) history.Add(input_.Typed());
      goesOn = Run(found);
    } catch (const Failure& failure) {
      Learn(session, history);
      if (failure.IsSilent()) throw;
      Show(failure);
      out_.clear();  // an interrupted write
      return ForgetInterrupt();
    }
    Learn(session, history);
    return goesOn;
  }

  // The secrets that came with the call.
  void Learn(const ScriptSession& session, KeptHistory& history) {
    history.Learn(session.Secrets());
    history.Learn(run_.TakeTickets());
  }

  void Show(const Failure& failure) const {
    reporter_.Report(failure);
    if (failure.Place() && !options_.json) err_ << Excerpt(run_.LastScript(), *failure.Place()) << std::flush;
  }

  const ShellOptions& options_;
  ShellRun& run_;
  std::ostream& out_;
  std::ostream& err_;
  Reporter reporter_;
  ShellInput input_;
};

void Greet(const SessionSettings& settings, std::ostream& err) {
  err << "scriptwells " SCRIPTWELLS_VERSION ", session on " << OneLine(settings.server)
      << "; :help lists the commands, Ctrl-D ends" << std::endl;
}

}  // namespace

SessionSettings PrepareShell(const ShellOptions& options) {
  SessionSettings settings = SettingsOf(options);
  settings.manyCalls = true;
  settings.options.language = options.language;
  settings.options.replaceFiles = false;
  if (options.local) settings.server = "http://localhost";
  if (options.local)
    CheckSettings(settings);
  else
    TakePassword(options, settings);
  return settings;
}

void RunShell(const ShellOptions& options, const SessionSettings& settings, std::ostream& out,
              std::ostream& err) {
  const Reporter reporter(err, FormOf(options.json));
  ShellRun run(options, settings, out, reporter);
  InSession(settings, reporter, [&](ScriptSession& session) {
    run.Use(session);
    Shell shell(options, run, out, err);
    if (!IsTyped()) return shell.RunPiped();
    if (!options.json) Greet(settings, err);
    shell.RunTyped(session);
  });
}

void ShellCommand(const ShellOptions& options, std::ostream& out, std::ostream& err) {
  RunShell(options, PrepareShell(options), out, err);
}

int RunShellCommand(CallingCommand command) noexcept {
  return InCommandFrame(command.parsed, command.err, [&command] {
    ShellCommand(command.parsed.shell, command.out, command.err);
    return ExitStatus::kOk;
  });
}

}  // namespace qv::cli

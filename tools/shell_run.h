// What the shell does with its commands and scripts.
#pragma once

#include <chrono>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/input/parameter_text.h"
#include "tools/input/parsed_options.h"
#include "tools/report/reporter.h"
#include "tools/shell/completion.h"
#include "tools/shell/shell_commands.h"
#include "tools/transfer/script_session.h"

namespace qv::cli {

class ShellRun {
 public:
  // All are borrowed. Throws Failure (kLocal) for a wrong parameter of the options.
  ShellRun(const ShellOptions& options, const SessionSettings& settings, std::ostream& out,
           const Reporter& reporter);

  // The session of all that follows, which has to be open.
  void Use(ScriptSession& session);

  // Both throw Failure. `script` is in the language of Language().
  void RunScript(const std::string& script);
  // False for ":quit".
  bool RunCommand(const TypedCommand& command);

  const std::string& Language() const noexcept { return language_; }
  CompletionNames Names() const;
  // In addresses that scripts have answered since the last time.
  std::vector<std::string> TakeTickets() { return std::exchange(tickets_, {}); }
  // The script of the last RunScript, to show the place of its fault; empty after commands.
  const std::string& LastScript() const noexcept { return lastScript_; }

 private:
  using Action = void (ShellRun::*)(const std::string& argument);
  struct ActionRow;
  static const std::vector<ActionRow>& Actions();

  void Help(const std::string& name);
  void SetLanguage(const std::string& name);
  void OpenFile(const std::string& file);
  void SetOutput(const std::string& format);
  void SetParameter(const std::string& text);
  void ListParameters(const std::string& unused);
  void SaveAnswer(const std::string& target);
  void ShowSession(const std::string& unused);
  void SetTime(const std::string& argument);
  void SetTrace(const std::string& argument);
  void RemoveParameter(const std::string& name);
  void SetUpload(const std::string& text);

  void Put(const std::string& text);
  scriptwells::Arguments ArgumentsNow() const;
  template <class Call>
  void Answer(const Call& call);

  struct Parameter {
    std::string text;  // "name=type:value"
    ScriptParameter parsed;
  };

  const ShellOptions& options_;
  const SessionSettings& settings_;
  std::ostream& out_;
  const Reporter& reporter_;
  ScriptSession* session_ = nullptr;
  std::string language_;
  OutputFormat output_;
  bool showsTime_ = false;
  std::string traceFile_;  // empty: none
  std::vector<Parameter> parameters_;
  std::vector<std::string> columns_;  // of the last table
  std::optional<scriptwells::Value> answer_;
  std::vector<std::string> tickets_;
  std::string lastScript_;
  int calls_ = 0;
  std::chrono::steady_clock::time_point begin_;
};

}  // namespace qv::cli

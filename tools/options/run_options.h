// The options of `run` and of `run-document`, which differ in the script only.
#pragma once

#include <optional>
#include <string>

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"
#include "tools/options/script_options.h"
#include "tools/options/session_options.h"

namespace qv::cli {

class RunArguments : public CommandArguments {
 public:
  enum class Kind { kScript, kDocument };

  RunArguments(CLI::App& app, Kind kind);
  // To be called once, after parsing: applies the environment and checks options that depend on each other.
  // Returns an error message, or null.
  const char* Check();
  const RunOptions& Options() const { return run_; }

 private:
  void DefineScript();
  void DefineDocument();
  void DefineParameters();
  void DefineOutput();
  const char* WrongWithNull() const;
  const char* WrongWithScript() const;
  const char* WrongWithServer();
  const char* WrongWithSave() const;
  const char* WrongWithWatch() const;
  const char* WrongWithPage() const;

  RunOptions run_;
  OutputArgument output_;
  std::optional<SessionArguments> session_;
  CLI::Option* code_ = nullptr;  // null for a document
  CLI::Option* null_ = nullptr;
  CLI::Option* save_ = nullptr;
};

}  // namespace qv::cli

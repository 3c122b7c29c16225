// The options of `run` and of `run-document`, which has the same but for the script itself.
#pragma once

#include <string>

#include "tools/options.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

class RunArguments {
 public:
  enum class Kind { kScript, kDocument };

  // Adds the command to `app`, which owns it; its parsing writes to this object.
  RunArguments(CLI::App& app, Kind kind);
  RunArguments(const RunArguments&) = delete;
  RunArguments& operator=(const RunArguments&) = delete;

  bool Parsed() const;
  // To be called once, after parsing: settles what follows from several options and the environment. What is
  // wrong, or null.
  const char* Check();
  const RunOptions& Options() const { return run_; }

 private:
  void DefineScript(CLI::App& app);
  void DefineDocument(CLI::App& app);
  void DefineServer();
  void DefineCredentials();
  void DefineWaits();
  void DefineOutput();
  const char* WrongWithOutput();
  const char* WrongWithScript() const;
  const char* WrongWithServer();
  const char* WrongWithPassword() const;
  const char* WrongWithWaits() const;

  RunOptions run_;
  std::string output_ = "text";
  CLI::App* command_ = nullptr;
  CLI::Option* code_ = nullptr;  // null for a document
  CLI::Option* server_ = nullptr;
  CLI::Option* outputOption_ = nullptr;
};

}  // namespace qv::cli

// The options of a session, which several commands have in common.
#pragma once

#include "tools/options.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

class SessionArguments {
 public:
  // Adds the options to `command`; its parsing writes to `options`. Both have to live as long as this object.
  SessionArguments(CLI::App& command, SessionOptions& options);
  SessionArguments(const SessionArguments&) = delete;
  SessionArguments& operator=(const SessionArguments&) = delete;

  // Whether --server stands on the command line.
  bool HasServer() const;
  // Takes the server of the environment when none stands on the command line. False when there is none at
  // all.
  bool TakeServer();
  // Whether the command line tells where a password comes from.
  bool HasPassword() const;
  // After parsing: what is wrong, or null.
  const char* Check() const;

 private:
  void DefineServer();
  void DefineCredentials();
  void DefineWaits();

  CLI::App& command_;
  SessionOptions& options_;
  CLI::Option* server_ = nullptr;
};

}  // namespace qv::cli

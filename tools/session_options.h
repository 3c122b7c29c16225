// The options of a session, which several commands have in common.
#pragma once

#include "tools/options.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

// What a command does with sessions.
enum class SessionKind {
  kEither,   // opens one, unless --usid names one
  kOpened,   // opens one
  kAdopted,  // uses that of --usid
};

class SessionArguments {
 public:
  // Adds the options to `command`; its parsing writes to `options`. Both have to live as long as this object.
  SessionArguments(CLI::App& command, SessionOptions& options, SessionKind kind = SessionKind::kEither);
  SessionArguments(const SessionArguments&) = delete;
  SessionArguments& operator=(const SessionArguments&) = delete;

  // Whether --server stands on the command line.
  bool HasServer() const;
  // Takes the server of the environment when none stands on the command line. False when there is none at
  // all.
  bool TakeServer();
  // Whether --usid stands on the command line.
  bool HasUsid() const;
  // After parsing: what is wrong, or null. Takes the session of the environment when none stands on the
  // command line.
  const char* Check();

 private:
  void DefineServer();
  void DefineCredentials();
  void DefineUsid();
  void DefineTls();
  void DefineWaits();
  const char* WrongWithUsid();

  CLI::App& command_;
  SessionOptions& options_;
  CLI::Option* server_ = nullptr;
  CLI::Option* usid_ = nullptr;  // null for kOpened
};

}  // namespace qv::cli

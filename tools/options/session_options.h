// The options of a session, which several commands share.
#pragma once

#include <cstddef>

#include "tools/input/parsed_options.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

// What a command does with sessions.
enum class SessionKind {
  kEither,   // opens one, unless --usid names one
  kOpened,   // always opens one
  kChecked,  // the same, and shows what passes by itself
  kAdopted,  // always uses that of --usid
};

class SessionArguments {
 public:
  // Adds the options to `command`. Parsing sets `options`. Both must outlive this object.
  SessionArguments(CLI::App& command, SessionOptions& options, SessionKind kind = SessionKind::kEither);
  SessionArguments(const SessionArguments&) = delete;
  SessionArguments& operator=(const SessionArguments&) = delete;

  // Whether --server is on the command line.
  bool HasServer() const;
  // Uses the server of the environment, else of the profile, if none is on the command line. False if there
  // is none at all, nor a tape in its place.
  bool TakeServer();
  // Whether --usid is on the command line.
  bool HasUsid() const;
  // To be called after parsing. Uses the session of the environment if none is on the command line. Returns
  // an error message, or null.
  const char* Check();

 private:
  void DefineCredentials();
  void DefineUsid();
  void DefineTrace();
  void DefineTapes();
  const char* WrongWithUsid();
  std::ptrdiff_t TypedPasswords() const;

  CLI::App& command_;
  SessionOptions& options_;
  CLI::Option* usid_ = nullptr;  // null for kOpened
};

}  // namespace qv::cli

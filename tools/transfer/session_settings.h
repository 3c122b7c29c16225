// What the command line says about a session, as the library takes it.
#pragma once

#include <string>

#include "scriptwells/options.h"
#include "tools/input/parsed_options.h"

namespace qv::cli {

// All texts are UTF-8. The destructor clears the secrets of each copy.
struct SessionSettings {
  std::string server;
  scriptwells::Credentials credentials;
  std::string usid;              // of a session to use; empty: a new one is opened
  scriptwells::Options options;  // the total time is that of the whole session
  std::string traceFile;         // as in SessionOptions
  bool manyCalls = false;        // the total time is that of each call, and a trace may begin at any time
  bool showProgress = false;     // of long transfers, if standard error is a terminal

  ~SessionSettings();
};

// Whether an HTTP header can hold the text. A session's id is sent in one.
bool IsHeaderValue(const std::string& text);

// The settings without a password. The session's id is checked. Throws Failure (kLocal).
SessionSettings SettingsOf(const SessionOptions& options);

// Checks everything else: server, proxy, user, replica, certificates. Throws Failure (kLocal).
void CheckSettings(const SessionSettings& settings);

// Checks the settings, then finds the password, unless a session is used that is open already. Throws as
// FindPassword does, too.
void TakePassword(const SessionOptions& options, SessionSettings& settings, bool inputIsTaken = false);

}  // namespace qv::cli

// One session on one server, as a command uses it.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "scriptwells/session.h"
#include "tools/transfer/session_settings.h"
#include "tools/transfer/trace_file.h"
#include "tools/transfer/transfer_progress.h"

namespace qv::cli {

// Every operation throws Failure. The total time of the settings begins with the object.
class ScriptSession {
 public:
  explicit ScriptSession(const SessionSettings& settings);
  ScriptSession(const ScriptSession&) = delete;
  ScriptSession& operator=(const ScriptSession&) = delete;

  // Opens a session, or uses that of the settings without a request.
  void Open();
  scriptwells::Value Run(const std::string& script, const scriptwells::Arguments& arguments);
  scriptwells::Value RunDocument(const std::string& file, const scriptwells::Arguments& arguments);
  // Returns the file's native path.
  std::string Download(const std::string& url, const std::string& directory);
  // Closes the session that Open opened; nothing happens for an adopted one. After an interrupt, and when the
  // session's time is over, this takes at most 2 seconds.
  void Close();
  // Closes the session of the settings.
  void CloseAdopted();
  // The session stays open: the destructor does not close it.
  void LeaveOpen();

  // What no file may hold: the password, the session's id, the last tickets of uploads.
  std::vector<std::string> Secrets() const;
  // The id of the session that Open opened.
  std::string Id() const { return session_->Id(); }
  // What calls went on without since the last time: an upload that the server refused, a trace that could not
  // be written.
  std::vector<std::string> TakeWarnings();

  // For many calls (SessionSettings::manyCalls): the language of the next scripts.
  void UseLanguage(const std::string& language) { language_ = language; }
  // The same: writes a trace from now on, as in SessionOptions; empty: none.
  void TraceInto(const std::string& file);

 private:
  scriptwells::Options Options();
  void Look(const scriptwells::Exchange& exchange);
  scriptwells::RunOptions WithinTimeLeft() const;
  std::chrono::milliseconds TimeLeft() const;
  template <class Call>
  auto Called(const Call& call);

  const SessionSettings& settings_;
  std::optional<std::chrono::steady_clock::time_point> end_;  // of the total time
  TransferProgress progress_;
  std::optional<TraceFile> trace_;
  std::vector<std::string> refusedUploads_;
  std::optional<std::string> language_;
  std::optional<scriptwells::Session> session_;  // last: it uses the members above until its end
};

}  // namespace qv::cli

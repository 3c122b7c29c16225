// Calls of the client, and everything that was wrong with the answers.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "scriptwells/session.h"
#include "tools/inspect/check_report.h"
#include "tools/inspect/known_secrets.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

// What one call came to.
struct CallOutcome {
  std::optional<scriptwells::Error> error;
  bool isFault = false;  // the server reported one in good form
  bool isTimeout = false;
  Findings findings;  // of all of its answers
  RawAnswer answer;   // the last one
  std::chrono::microseconds time{};

  bool Succeeded() const { return !error; }
};

class CheckedCalls {
 public:
  // Both outlive this object.
  CheckedCalls(const SessionSettings& settings, std::vector<ShownFinding>& findings);

  // The options for sessions whose calls are made here.
  scriptwells::Options Options();
  // Makes a call. Throws Failure (kInterrupted, kTimeout).
  CallOutcome Make(const std::function<void()>& call);
  // The same, and adds what it finds under the name of the step.
  CallOutcome MakeStep(const std::string& step, const std::function<void()>& call);
  // Adds one more finding.
  void Add(const std::string& step, const Finding& finding, const RawAnswer& answer = {});

  KnownSecrets& Secrets() { return secrets_; }

 private:
  void Look(const scriptwells::Exchange& exchange);
  void LearnSecrets(const scriptwells::Exchange& exchange);
  void Examine(CallOutcome& outcome);

  const SessionSettings& settings_;
  std::vector<ShownFinding>& shown_;
  KnownSecrets secrets_;
  std::optional<std::chrono::steady_clock::time_point> end_;  // of the total time
  std::vector<scriptwells::Exchange> exchanges_;              // of the call
};

// The session's id in an answer of any form that has one; else empty.
std::string SessionIdIn(const RawAnswer& answer);

}  // namespace qv::cli

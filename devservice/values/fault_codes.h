// The numbers that the service puts into the `errorCode` of its faults.
#pragma once

#include <stdexcept>
#include <string>

namespace qv::devservice {

// Stable: scripts and tests compare them. A script's own errors may carry any number.
enum FaultCode : int {
  kBadRequest = 1001,
  kActionMismatch = 1002,
  kUserRefused = 1003,
  kUnknownSession = 1004,
  kTooManySessions = 1005,
  kBadScriptDocument = 1006,
  kUnknownLanguage = 1007,
  kBadParameter = 1008,
  kUnsupportedType = 1009,
  kScriptThrew = 1010,
  kScriptSyntax = 1011,
  kNoWireForm = 1012,
  kTimeLimit = 1013,
  kMemoryLimit = 1014,
  kWorkerCrashed = 1015,
  kUnavailable = 1016,
  kUnknownTicket = 1017,
  kTooManyFiles = 1018,
};

// Ends the handling of a request; becomes a SOAP fault. `what()` is the description, in UTF-8. `source` is
// its origin: "request", "session", "service", or the place in the script ("script, line 3").
class FaultError : public std::runtime_error {
 public:
  FaultError(int code, const std::string& description, std::string source)
      : std::runtime_error(description), code_(code), source_(std::move(source)) {}
  int Code() const { return code_; }
  const std::string& Source() const { return source_; }

 private:
  int code_;
  std::string source_;
};

}  // namespace qv::devservice

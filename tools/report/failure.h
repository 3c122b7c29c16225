// A failure on its way to the user: exit status and message.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace qv::cli {

// The exit codes of the program. Scripts compare these numbers.
enum class ExitStatus : int {
  kOk = 0,
  kFault = 1,          // the script or the server reported a fault; also a failure of the program itself
  kUsage = 2,          // an invalid command line
  kUnreachable = 3,    // the server was not reached, the connection broke, or TLS refused it
  kTimeout = 4,        // the server was silent for too long
  kRefused = 5,        // the server refused the session
  kLocal = 6,          // a local file or a parameter
  kAnswer = 7,         // an answer came and was not understood
  kInterrupted = 130,  // as shells report SIGINT
};

// A place in a script, from 1.
struct ScriptPlace {
  int line = 0;
  int column = 0;  // 0 if unknown
};

// `status` is never kOk. `message` is UTF-8 without the program's name and without a full stop.
class Failure : public std::exception {
 public:
  Failure(ExitStatus status, std::string message) : status_(status), message_(std::move(message)) {}
  // A fault that the server reported, with its result code.
  Failure(ExitStatus status, std::string message, std::uint32_t code)
      : status_(status), message_(std::move(message)), code_(code) {}

  // The same failure with `more` at the end of its message.
  Failure With(const std::string& more) const {
    Failure longer = *this;
    longer.message_ += more;
    return longer;
  }

  // The same failure with `kind` in place of the name of its status. Borrowed: a literal.
  Failure Called(const char* kind) const {
    Failure renamed = *this;
    renamed.kind_ = kind;
    return renamed;
  }

  // The same failure without a message: only the exit status reports it.
  Failure Silent() const {
    Failure silent = *this;
    silent.isSilent_ = true;
    return silent;
  }

  // The same failure at this place of the script.
  Failure At(const ScriptPlace& place) const {
    Failure placed = *this;
    placed.place_ = place;
    return placed;
  }

  // Nothing if the server did not say it.
  const std::optional<ScriptPlace>& Place() const noexcept { return place_; }
  bool IsSilent() const noexcept { return isSilent_; }
  ExitStatus Status() const noexcept { return status_; }
  // The kind that Called gave; else null.
  const char* OwnKind() const noexcept { return kind_; }
  const std::string& Message() const noexcept { return message_; }
  // The code, if it says more than the message.
  const std::optional<std::uint32_t>& Code() const noexcept { return code_; }
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  ExitStatus status_;
  std::string message_;
  std::optional<std::uint32_t> code_;
  std::optional<ScriptPlace> place_;
  const char* kind_ = nullptr;
  bool isSilent_ = false;
};

// "script fault", "timeout", ...: one short name per status, for people and for JSON.
const char* StatusName(ExitStatus status);

// The server's error number in a fault: the code without the bits that every fault has.
std::uint32_t FaultNumber(std::uint32_t code);

// "0x80040005"
std::string HexCode(std::uint32_t code);

}  // namespace qv::cli

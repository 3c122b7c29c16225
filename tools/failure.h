// A failure on its way to the user: exit status and words.
#pragma once

#include <exception>
#include <iosfwd>
#include <optional>
#include <string>

#include "qvscriptwells/result_codes.h"
#include "tools/exit_status.h"

namespace qv::cli {

// `status` is never kOk. `message` is UTF-8 without the program's name and without a full stop.
class Failure : public std::exception {
 public:
  Failure(ExitStatus status, std::string message) : status_(status), message_(std::move(message)) {}
  // A fault that the server reported: with the result code that came of it.
  Failure(ExitStatus status, std::string message, HRESULT code)
      : status_(status), message_(std::move(message)), code_(code) {}

  // The same failure with more words behind its own.
  Failure With(const std::string& more) const {
    Failure longer = *this;
    longer.message_ += more;
    return longer;
  }

  // The same failure under a name of its own, in place of its status's.
  Failure Called(const char* kind) const {
    Failure renamed = *this;
    renamed.kind_ = kind;
    return renamed;
  }

  // The same failure without a message: the exit status says it all.
  Failure Silent() const {
    Failure silent = *this;
    silent.isSilent_ = true;
    return silent;
  }

  bool IsSilent() const noexcept { return isSilent_; }
  ExitStatus Status() const noexcept { return status_; }
  // A literal; null unless it was given.
  const char* OwnKind() const noexcept { return kind_; }
  const std::string& Message() const noexcept { return message_; }
  // The code, when there is one that tells more than the words.
  const std::optional<HRESULT>& Code() const noexcept { return code_; }
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  ExitStatus status_;
  std::string message_;
  std::optional<HRESULT> code_;
  const char* kind_ = nullptr;
  bool isSilent_ = false;
};

// "script fault", "timeout", ...: one short name per status, for people and for JSON.
const char* StatusName(ExitStatus status);

// The error number that a server put into its fault: the code without the bits that every fault has.
std::uint32_t FaultNumber(HRESULT code);

// "0x80040005"
std::string HexCode(HRESULT code);

// Makes one printable line of a text that may come from anywhere: tabs and line ends become blanks, other
// characters that would drive a terminal become escapes (unsafe_characters.h).
std::string OneLine(const std::string& text);

// Writes nothing of a silent failure, else one line, or one line of JSON, which has the whole message where
// the line has its first 4000 bytes:
//   scriptwells: script fault 0x80040005 (5): no such customer
//   {"error":{"kind":"script fault","message":"no such customer","code":"0x80040005","number":5,"exit":1}}
void ReportFailure(const Failure& failure, bool asJson, std::ostream& err);

// One line that changes nothing about the exit status; `kind` is "note" or "warning".
//   scriptwells: note: parameter 'a' travels with 6 significant digits
//   {"note":"parameter 'a' travels with 6 significant digits"}
void ReportNote(const char* kind, const std::string& message, bool asJson, std::ostream& err);

}  // namespace qv::cli

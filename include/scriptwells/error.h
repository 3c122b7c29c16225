// SPDX-License-Identifier: Apache-2.0
// Errors of the library. All derive from Error:
//
//   ConnectionError   no connection, or one that broke: phases connect, TLS, send, wait, receive
//   TimeoutError      a limit of Options is over; phase() says where
//   SessionError      the server refused the session
//   ScriptError       the script, or the server for it, reported a fault
//   CancelledError    CancelToken::Cancel
//   ConversionError   Value::As, an argument that cannot be sent, or a loss under `strict`
//
// Everything else is an Error itself. docs/guide/errors.md has every phase with its class and the exit code of the
// command-line program. Functions of this library throw std::bad_alloc, too.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

// Marks what the shared library exports. Everything else in it is hidden.
#define SCRIPTWELLS_API __attribute__((visibility("default")))

namespace scriptwells {

// How far the call got.
enum class Phase {
  kAddress,     // an address, proxy, credential or other argument that cannot be used; nothing was sent
  kConnect,     // the name was not found, or the connection not made
  kTls,         // handshake or certificate
  kSend,        // the request was being sent
  kWait,        // the request was sent, and no answer had begun
  kReceive,     // the answer broke off
  kAnswer,      // an answer came and was not understood
  kSession,     // the server refused the session
  kScript,      // the server reported a fault
  kLocalFile,   // a local file or directory
  kConversion,  // a value that does not fit the type, or that would arrive changed
  kCancelled,
};
// "address", "connect", "TLS", ..., "local file", ...
SCRIPTWELLS_API const char* ToString(Phase phase) noexcept;

// What would help, where this library knows it. what() says it for C++; a program whose options have other names (a
// command line) uses message() and this.
enum class Remedy {
  kNone,
  kOwnAuthority,    // Options::authorities
  kOwnCertificate,  // Options::certificate
  kReplaceFiles,    // Options::replaceFiles: a file of that name is there
  kHiddenFiles,     // Options::hiddenFiles: the server's file name begins with "."
  kTotalTime,       // Options::totalTimeout is over
  kCredentials,     // the session was refused, and there was no user name
  kHomeDirectory,   // Options::homeDirectory: the upload scripts were not found
  kOtherSession,    // a download was refused; a file belongs to the session that made it
};

// What an Error knows besides phase and message.
struct ErrorDetails {
  Remedy remedy = Remedy::kNone;
  std::optional<std::uint32_t> number{};  // the server's number of a fault
  std::uint32_t result = 0;               // the result code of the call below, such as 0x80040005; 0 if none
  std::string text{};                     // the fixed text of the call below, which programs may compare
  std::string transport{};                // the message of the connection, such as "Connection refused"
  int status = 0;                         // the HTTP status of the answer; 0 if there was none
  int line = 0, column = 0;               // the place in the script, where the server says it; 0 if not
};

class SCRIPTWELLS_API Error : public std::runtime_error {
 public:
  Error(Phase phase, const std::string& message, ErrorDetails details = {});
  Error(const Error&) noexcept = default;
  Error& operator=(const Error&) noexcept = default;
  ~Error() override;

  Phase phase() const noexcept;
  const std::string& message() const noexcept;  // for people, in UTF-8; what() adds the remedy
  Remedy remedy() const noexcept { return details().remedy; }
  std::optional<std::uint32_t> number() const noexcept { return details().number; }
  int status() const noexcept { return details().status; }
  const ErrorDetails& details() const noexcept;

 private:
  struct Content;
  std::shared_ptr<const Content> content_;  // a copy of an exception must not throw
};

class SCRIPTWELLS_API ConnectionError : public Error {
  using Error::Error;
};
class SCRIPTWELLS_API TimeoutError : public Error {
  using Error::Error;
};
class SCRIPTWELLS_API SessionError : public Error {
  using Error::Error;
};
class SCRIPTWELLS_API ScriptError : public Error {
  using Error::Error;
};
class SCRIPTWELLS_API CancelledError : public Error {
  using Error::Error;
};
class SCRIPTWELLS_API ConversionError : public Error {
  using Error::Error;
};

}  // namespace scriptwells

// SPDX-License-Identifier: Apache-2.0
// Options of sessions and calls, and what their listeners get.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

#include "scriptwells/error.h"

namespace scriptwells {

struct Credentials {
  std::string user{}, password{}, replica{};
};

// Cancels running calls from any thread, or from a signal handler. Copies share one state.
class SCRIPTWELLS_API CancelToken {
 public:
  CancelToken();
  CancelToken(const CancelToken&) = default;  // also in place of a move, which would leave a token without state
  CancelToken& operator=(const CancelToken&) = default;
  // Calls that use the token end with CancelledError, at the latest after a quarter of a second (those of
  // RunAsync: when their turn comes); later calls at once; closing a session goes on. Safe in a signal handler.
  void Cancel() noexcept { *state_ = true; }
  void Reset() noexcept { *state_ = false; }  // later calls work again
  bool IsCancelled() const noexcept { return *state_; }

 private:
  std::shared_ptr<std::atomic<bool>> state_;
};

struct Progress {
  bool sending = false;
  std::int64_t done = 0;    // bytes of the body
  std::int64_t total = -1;  // -1: unknown
  std::string_view file{};  // the local path of an upload or download; empty for a message
};
// Called on the thread of the call, between chunks and every quarter of a second while waiting. An exception that it
// throws ends the call and reaches the caller.
using ProgressListener = std::function<void(const Progress&)>;

// Runs a function, soon and once, on any thread. For Session::RunAsync.
using Executor = std::function<void(std::function<void()>)>;
// A pool of the library's own threads, which start with the first function. The last copy waits for all functions.
SCRIPTWELLS_API Executor ThreadPool(unsigned threads);

// kUploadAddress is a script that asks where to upload a file.
enum class Purpose { kOpenSession, kCloseSession, kExecute, kUploadAddress, kUpload, kDownload };
// "open session", "close session", "execute", "upload address", "upload", "download"
SCRIPTWELLS_API const char* ToString(Purpose purpose) noexcept;

// One HTTP exchange, as far as it got. Heads and bodies are the bytes of the connection, but for secrets: each
// password, session id and upload ticket (of earlier calls the last 16) is "***" wherever it occurs, also escaped.
// Bodies of files are left out.
struct Exchange {
  Purpose purpose = Purpose::kExecute;
  std::string server{};       // "http://host:port"
  std::string proxy{};        // "host:port"; empty without one
  std::string requestHead{};  // the request line, headers and the empty line
  std::string requestBody{}, answerHead{}, answerBody{};
  int status = 0;                                 // 0: no answer
  std::string file{};                             // the local path of an upload or download
  std::int64_t sentBytes = 0, receivedBytes = 0;  // of the bodies
  std::string failure{};                          // the message of the connection; empty for none
  std::chrono::system_clock::time_point begin{};
  std::chrono::microseconds connecting{};  // 0 on a kept connection
  std::chrono::microseconds waiting{};     // from the request's first byte to the answer's first
  std::chrono::microseconds total{};       // with connecting
};
// Called at the end of each exchange, on the thread of the call; it must not call the session. An exception that it
// throws ends the call and reaches the caller of Run.
using ExchangeListener = std::function<void(const Exchange&)>;
// One line: "POST http://127.0.0.1:8080/... execute 200, 912 bytes sent, 1204 received, 3 ms".
SCRIPTWELLS_API std::string Summary(const Exchange& exchange);

// Times and sizes of 0 mean no limit.
struct Options {
  std::string language = "JavaScript";  // of Run
  std::string proxy{};                  // "name" (port 80) or "name:port"; empty for none

  std::chrono::milliseconds connectTimeout{30'000};  // for each connection, with resolving and TLS
  std::chrono::milliseconds silenceTimeout{60'000};  // without a byte in either direction
  std::chrono::milliseconds totalTimeout{0};         // for each call, with its uploads
  std::chrono::milliseconds closeTimeout{2'000};     // of the destructor's close
  std::int64_t leastBytesPerSecond = 16;             // mean of a minute of waiting
  std::int64_t mostAnswerBytes = std::int64_t{512} << 20;

  // For https; PEM files, empty for none. The authorities replace those of the system.
  std::filesystem::path authorities{}, certificate{};
  std::filesystem::path key{};  // may be in the certificate's file; has no password
  // Where the upload scripts are (ClientScripts/UploadScript.xml and UploadScriptWithoutTicketdId.xml). Empty: the
  // installation's, which the registry names.
  std::filesystem::path homeDirectory{};
  bool replaceFiles = true;  // Download replaces a file that is there
  bool hiddenFiles = false;  // Download saves under names that begin with "."
  // Refuse what the protocol would change: arguments with LossesOnTheWire, and answers whose type does not arrive
  // (long, byte, URL), or with a part of a second, a zone of hours, a large count in a duration.
  bool strict = false;
  // The destructor cancels what RunAsync has queued and runs, and does not wait for it.
  bool cancelQueued = false;
  std::optional<CancelToken> cancel{};
  ProgressListener progress{};
  ExchangeListener listener{};
  bool showSecrets = false;    // to the listener
  bool listenerBodies = true;  // the listener gets heads and bodies, which costs time and memory
  // Tapes (docs/tapes.md). `record` is created or appended to, with masked secrets. With `replay` all answers come
  // from the tape, nothing is sent, and a request that it does not have throws Error (kLocalFile).
  std::filesystem::path record{}, replay{};
  Executor executor{};  // of RunAsync
};

// Options of one call. What is not set is that of the session.
struct RunOptions {
  std::optional<std::string> language{};
  std::optional<bool> strict{};
  std::optional<std::chrono::milliseconds> totalTimeout{};
  std::optional<CancelToken> cancel{};
  ProgressListener progress{};
};

}  // namespace scriptwells

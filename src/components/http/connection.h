// One open connection to an endpoint: resolved, connected and, for https, verified by libcurl; bytes go
// through libcurl as well. A connection is never shared, and only Send sends on it. Threads: one at a time.
#pragma once

#include <curl/curl.h>
#include <sys/types.h>

#include <chrono>
#include <memory>
#include <string_view>

#include "components/http/endpoint.h"
#include "components/http/transfer_watch.h"
#include "components/http/wire_tap.h"

namespace qv {

struct CurlEasyCloser {
  void operator()(CURL* handle) const noexcept { curl_easy_cleanup(handle); }
};
using CurlEasy = std::unique_ptr<CURL, CurlEasyCloser>;

class Connection {
 public:
  // Connects within `watch`'s time. Throws HttpFailure with libcurl's message.
  Connection(const Endpoint& endpoint, TransferWatch& watch);
  // Sends and receives on `line` only; it serves one request.
  Connection(const Endpoint& endpoint, std::unique_ptr<WireLine> line);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  const Endpoint& Target() const noexcept { return endpoint_; }
  // Still open, no unexpected bytes received, and not inherited from a parent process.
  bool IsAlive() noexcept;
  bool MayBeKept() const noexcept { return line_ == nullptr; }

  // Sends as much as the system accepts now, which may be 0 bytes. Throws HttpFailure (HTTP_E_CUT_OFF).
  std::size_t Send(std::string_view bytes);
  enum class Arrival { kBytes, kNothingYet, kClosed };
  // Appends received bytes to the buffer, which must have room. Throws as Send.
  Arrival Receive();
  // Waits for `events` of poll(). Throws HttpFailure for timeout and cancellation; returns the ready events.
  short Wait(short events, TransferWatch& watch);

  // Received bytes that are not yet consumed. The view is valid until the next Receive.
  std::string_view Buffered() const noexcept;
  void Take(std::size_t bytes) noexcept;
  // After an exchange: clears all bytes that it received.
  void ClearBuffer() noexcept;
  // TLS may hold bytes that poll() does not see, and a line is never waited for.
  bool MayHoldBytes() const noexcept { return endpoint_.secure || filledUp_ || line_ != nullptr; }

  void NoteIdle() noexcept { idleSince_ = std::chrono::steady_clock::now(); }
  std::chrono::steady_clock::time_point IdleSince() const noexcept { return idleSince_; }

 private:
  void SetOptions(TransferWatch& watch);
  void SetTrust();
  void Perform(const TransferWatch& watch);
  CURLcode ReceiveInto(char* bytes, std::size_t room, std::size_t* received);
  void DetachFromParent() noexcept;

  Endpoint endpoint_;
  std::unique_ptr<WireLine> line_;  // null: libcurl's connection
  char words_[CURL_ERROR_SIZE] = {};
  CurlEasy handle_;
  int socket_ = -1;
  pid_t owner_;
  std::unique_ptr<char[]> buffer_;  // of kBufferBytes; not filled beforehand
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t filled_ = 0;  // the maximum since the last clear
  bool filledUp_ = false;
  std::chrono::steady_clock::time_point idleSince_{};
};

using ConnectionPtr = std::unique_ptr<Connection>;

}  // namespace qv

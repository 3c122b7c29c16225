// A client that only knows sockets, so that tests see every byte of an answer.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace qv::devservice::testing {

struct RawAnswer {
  std::string head;       // Up to and with the empty line.
  std::string body;       // As many bytes as came, chunks not undone.
  bool closed = false;    // The other side closed the connection while we waited.
  bool timedOut = false;  // Nothing more came in time, and the announced length was not reached.
};

// One connection. Throws std::runtime_error when it cannot be made.
class RawClient {
 public:
  explicit RawClient(int port);
  // Sends at once.
  RawClient(int port, const std::string& bytes) : RawClient(port) { Send(bytes); }
  ~RawClient();
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  void Send(const std::string& bytes) const;
  // Closes our direction of the connection.
  void EndSending() const;
  // Reads to the end of the announced length, else to the end of the connection, but no longer than `time`.
  RawAnswer Receive(std::chrono::milliseconds time = std::chrono::seconds(60));
  // The same with a body that is not kept: its bytes go to `take`. Pieces need no new memory, since
  // tests measure what a transfer takes.
  RawAnswer Receive(std::chrono::milliseconds time, const std::function<void(std::string_view)>& take);

 private:
  int socket_;
};

// The value of a header in a head, or "(none)". The name is compared exactly.
std::string HeaderOf(const std::string& head, const std::string& name);

// "200", for example; "(none)" without a head of HTTP 1.1.
std::string StatusOf(const RawAnswer& answer);

}  // namespace qv::devservice::testing

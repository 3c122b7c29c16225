// A client that knows nothing but sockets, so that tests see the very bytes of an answer.
#pragma once

#include <chrono>
#include <string>

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
  ~RawClient();
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  void Send(const std::string& bytes);
  // Reads to the end of the announced length, else to the end of the connection, but no longer than `time`.
  RawAnswer Receive(std::chrono::milliseconds time = std::chrono::seconds(60));

 private:
  int socket_;
};

// The value of a header in a head, or "(none)". The name is compared as it stands.
std::string HeaderOf(const std::string& head, const std::string& name);

}  // namespace qv::devservice::testing

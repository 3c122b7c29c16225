// A client that only knows sockets, so that tests see every byte of an answer.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace qv::devservice::testing {

struct RawAnswer {
  std::string head;       // Up to and with the empty line.
  std::string body;       // As many bytes as came, chunks not undone.
  bool closed = false;    // The other side closed the connection while we waited.
  bool timedOut = false;  // Nothing more came in time, and the announced length was not reached.
};

// An answer whose body was too long to be kept.
struct DrainedAnswer {
  std::string head;
  std::size_t bytes = 0;
  bool asPattern = true;  // Every byte was that of PatternByte.
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

  void Send(const std::string& bytes);
  // Closes our direction of the connection.
  void EndSending();
  // Reads to the end of the announced length, else to the end of the connection, but no longer than `time`.
  RawAnswer Receive(std::chrono::milliseconds time = std::chrono::seconds(60));
  // Reads like Receive, but keeps only the head: the body's bytes are compared with PatternByte and counted.
  // Waits at most a minute for the next byte.
  DrainedAnswer Drain();

 private:
  // Appends the next bytes; none after `time` or when the other side has closed (`closed`). A piece takes no
  // memory of its own: tests measure what a transfer takes.
  bool ReadPiece(std::chrono::milliseconds time, std::string& bytes, bool& closed);

  int socket_;
};

// The byte at a position of a large body that needs no memory.
inline char PatternByte(std::size_t position) {
  return static_cast<char>(position % 251);
}

// The value of a header in a head, or "(none)". The name is compared exactly.
std::string HeaderOf(const std::string& head, const std::string& name);

// "200", for example; "(none)" without a head of HTTP 1.1.
std::string StatusOf(const RawAnswer& answer);

}  // namespace qv::devservice::testing

// One accepted connection, as the stream that cpp-httplib reads from and writes to.
#pragma once

#include <httplib.h>

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "devservice/http/http_message.h"
#include "devservice/http/message_time.h"

namespace qv::devservice {

// Buffers both directions, so that an answer is sent in one piece. Used by one thread; only the server's Stop
// shuts the socket down from another one.
class Connection : public httplib::Stream {
 public:
  // Borrows the socket; the caller closes it. `messageTime` is for each request and each answer, see
  // MessageTime.
  Connection(socket_t socket, std::chrono::milliseconds messageTime);

  // Waits for the first byte of a request; false when none comes in time or the other side has closed.
  bool WaitForRequest(std::chrono::milliseconds time);

  // Starts a request, and its time, that may take no more than `bytes` off the wire.
  void BeginRequest(std::size_t bytes);

  // The path of the current request, kept here while the library routes.
  void SetPath(std::string path) { path_ = std::move(path); }
  const std::string& Path() const { return path_; }

  // From now on what the HTTP library writes for this request is dropped, and Finish sends `answer`.
  void TakeOver(HttpAnswer answer) { answer_ = std::move(answer); }

  // No further request is read after this one.
  void CloseAfterwards() { close_ = true; }

  bool Closes() const { return close_; }

  // Whether the current request used up its time before it was read.
  bool IsLate() const { return late_; }

  // The current request is refused before its body was read: no further request, and DrainRest has work.
  void AbandonRest() { close_ = drains_ = true; }

  // Makes room for a body that does not count among the bytes of BeginRequest.
  void AllowBody(std::size_t bytes) { budget_ += bytes; }

  // The answer of TakeOver, which Deliver sends; null without one. What the HTTP library wrote is dropped
  // now.
  const HttpAnswer* BeginDelivery();

  // Sends what is still to be sent; true when the connection can serve another request.
  bool Finish();

  // Lets the client read the refusal: for some seconds, or until it closes, what it still sends is dropped.
  void DrainRest() const;

  // For the delivery of an answer: sends at once, false (and the connection closes) when that fails; waits
  // until the time is over, false when the client closes, or the server stops, before.
  bool SendNow(std::string_view bytes);
  bool HoldStill(std::chrono::milliseconds time);

  bool is_readable() const override;
  bool is_writable() const override;
  ssize_t read(char* target, std::size_t size) override;
  ssize_t write(const char* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return socket_; }

 private:
  bool AwaitBytes();
  bool Fill();
  bool Flush();

  socket_t socket_;
  const std::chrono::milliseconds messageTime_;
  MessageTime reading_;
  std::optional<MessageTime> sending_;  // From the first byte of an answer on.
  std::string incoming_;
  std::size_t readAt_ = 0;
  std::size_t budget_ = 0;
  std::string outgoing_;
  std::string path_;
  std::optional<HttpAnswer> answer_;
  bool late_ = false;
  bool close_ = false;
  bool drains_ = false;
};

}  // namespace qv::devservice

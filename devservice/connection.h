// One accepted connection, as the stream that cpp-httplib reads from and writes to.
#pragma once

#include <httplib.h>

#include <chrono>
#include <optional>
#include <string>

#include "devservice/http_server.h"

namespace qv::devservice {

// Buffers both directions, so that an answer leaves in one piece. Used by its own thread; only Shutdown of
// the socket by the server's Stop comes from another one.
class Connection : public httplib::Stream {
 public:
  // Borrows the socket; the caller closes it.
  explicit Connection(socket_t socket);

  // Waits for the first byte of a request; false when none comes in time or the other side has closed.
  bool WaitForRequest(std::chrono::milliseconds time);

  // Starts a request that may take no more than `bytes` off the wire.
  void BeginRequest(std::size_t bytes);

  // The path of the present request, kept here while the library routes.
  void SetPath(std::string path) { path_ = std::move(path); }
  const std::string& Path() const { return path_; }

  // From now on what the HTTP library writes for this request is dropped, and Finish sends `answer`.
  void TakeOver(HttpAnswer answer) { answer_ = std::move(answer); }

  // No further request is read after this one.
  void CloseAfterwards() { close_ = true; }

  // Sends what is still to be sent; true when the connection can serve another request.
  bool Finish(std::chrono::milliseconds stallTime);

  bool is_readable() const override;
  bool is_writable() const override;
  ssize_t read(char* target, std::size_t size) override;
  ssize_t write(const char* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return socket_; }

 private:
  bool Fill();
  bool Flush();
  bool Send(const std::string& bytes);
  void Deliver(const HttpAnswer& answer, std::chrono::milliseconds stallTime);
  void HoldStill(std::chrono::milliseconds time) const;

  socket_t socket_;
  std::string incoming_;
  std::size_t readAt_ = 0;
  std::size_t budget_ = 0;
  std::string outgoing_;
  std::string path_;
  std::optional<HttpAnswer> answer_;
  bool close_ = false;
};

}  // namespace qv::devservice

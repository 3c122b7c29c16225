// The fastest server that a client can meet: reads a request to the end of its announced body and sends the
// same bytes each time, on kept connections, on loopback. Runs on a thread of its own until destroyed.
#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace qv::bench {

class CannedServer {
 public:
  // `body` goes out with status 200 and its length. Throws std::system_error when no port can be had.
  explicit CannedServer(const std::string& body);
  ~CannedServer();
  CannedServer(const CannedServer&) = delete;
  CannedServer& operator=(const CannedServer&) = delete;

  int Port() const { return port_; }
  std::string Url() const { return "http://127.0.0.1:" + std::to_string(port_); }

 private:
  void ServeConnections();
  bool ServeRequest(int connection);

  std::string answer_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

}  // namespace qv::bench

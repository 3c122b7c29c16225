// A Scriptwells server in a process of its own, so that nothing is refused to it. It knows the few requests
// that the scenes send, and gives each its one answer.
#pragma once

#include <sys/types.h>

#include <cstdint>

namespace qv::torture {

class AnsweringServer {
 public:
  // Throws std::runtime_error when it cannot listen or start.
  AnsweringServer();
  // Ends the process.
  ~AnsweringServer();
  AnsweringServer(const AnsweringServer&) = delete;
  AnsweringServer& operator=(const AnsweringServer&) = delete;

  std::uint16_t Port() const { return port_; }

 private:
  std::uint16_t port_ = 0;
  pid_t process_ = -1;
};

}  // namespace qv::torture

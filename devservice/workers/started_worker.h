// A script worker's process, from its start on.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace qv::devservice {

// Owns a process that was started as script worker, and the socket to it. It may not have greeted yet. The
// destructor kills the process and waits for its end, so none is left as a zombie.
class StartedWorker {
 public:
  // None.
  StartedWorker() = default;
  // Starts the program, and waits for nothing. The process gets an empty environment, and of our descriptors
  // only the socket. The calling thread has to outlive the process: the system kills a worker whose parent
  // thread has ended. Throws std::runtime_error.
  explicit StartedWorker(const std::vector<std::string>& command);
  ~StartedWorker();
  StartedWorker(StartedWorker&& other) noexcept;
  StartedWorker& operator=(StartedWorker&& other) noexcept;

  explicit operator bool() const { return process_ > 0; }
  const std::string& Program() const { return program_; }
  pid_t Process() const { return process_; }
  int Socket() const { return socket_; }
  // Whether the process still runs.
  bool IsAlive();

 private:
  std::string program_;
  pid_t process_ = -1;
  int socket_ = -1;
  bool reaped_ = false;
};

}  // namespace qv::devservice

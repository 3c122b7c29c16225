// The threads and sockets of the server's connections.
#pragma once

#include <httplib.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace qv::devservice {

// Threads for connections: a new one whenever none is free, up to a number, then a queue. A kept connection
// holds its thread, so a fixed small pool would starve the next client.
class ConnectionThreads : public httplib::TaskQueue {
 public:
  explicit ConnectionThreads(std::size_t most) : most_(most) {}
  void enqueue(std::function<void()> task) override;
  // Waits for all tasks.
  void shutdown() override;

 private:
  void Work();

  const std::size_t most_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> tasks_;
  std::vector<std::thread> threads_;
  std::size_t free_ = 0;  // Threads that wait for a task, or will as soon as they run.
  bool ended_ = false;
};

// The sockets that are being served, so that a stop reaches them all. Thread-safe.
class OpenSockets {
 public:
  // False when the server is stopping; do not serve the socket then.
  bool Add(socket_t socket);
  // Closes under the lock: a shutdown must not hit the next socket of the same number.
  void Close(socket_t socket);
  void ShutdownAll();

 private:
  std::mutex mutex_;
  std::set<socket_t> sockets_;
  bool stopping_ = false;
};

}  // namespace qv::devservice

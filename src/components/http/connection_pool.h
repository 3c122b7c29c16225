// The connections that a thread keeps open between requests. They close when the thread ends.
#pragma once

#include <vector>

#include "components/http/connection.h"

namespace qv {

class ConnectionPool {
 public:
  // This thread's pool; null before it keeps a connection, and after the ending thread has closed them.
  static ConnectionPool* OfThisThread() noexcept;
  // The same, created if needed. That registers a thread-exit handler, and the C library aborts the process
  // if it has no memory for one; so call this only when there is a connection to keep.
  static ConnectionPool* MadeForThisThread() noexcept;

  ~ConnectionPool();

  // Removes and returns a live connection to `endpoint`; null if there is none. Dead ones are closed.
  ConnectionPtr Take(const Endpoint& endpoint) noexcept;
  // Keeps an idle connection; if there are too many, closes the one that is idle longest.
  void Put(ConnectionPtr connection) noexcept;
  void Clear() noexcept { kept_.clear(); }

 private:
  std::vector<ConnectionPtr> kept_;  // in order of arrival
};

}  // namespace qv

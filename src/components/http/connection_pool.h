// The connections that a thread keeps open between requests. Each thread has its own; they close when it
// ends.
#pragma once

#include <vector>

#include "components/http/connection.h"

namespace qv {

class ConnectionPool {
 public:
  // This thread's; null before it keeps a connection, and while the thread is ending and its connections are
  // gone.
  static ConnectionPool* OfThisThread() noexcept;
  // The same, made if need be. This tells the C library about the thread's end, which ends the process when
  // it has no memory for that; so it waits until there is a connection to keep.
  static ConnectionPool* MadeForThisThread() noexcept;

  ~ConnectionPool();

  // A kept connection to `endpoint` that is alive, taken out; null when there is none. Dead ones are closed.
  ConnectionPtr Take(const Endpoint& endpoint) noexcept;
  // Keeps an idle connection; the one that is idle longest gives way when there are too many.
  void Put(ConnectionPtr connection) noexcept;
  void Clear() noexcept { kept_.clear(); }

 private:
  std::vector<ConnectionPtr> kept_;  // in the order of their coming
};

}  // namespace qv

#include "components/http/connection_pool.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace qv {
namespace {

constexpr std::size_t kMostKept = 8;
constexpr std::chrono::seconds kLongestIdle{60};

[[gnu::tls_model("initial-exec")]] thread_local bool threadHasPool = false;
[[gnu::tls_model("initial-exec")]] thread_local bool threadIsEnding = false;

bool IsTooOld(const Connection& connection) noexcept {
  return std::chrono::steady_clock::now() - connection.IdleSince() > kLongestIdle;
}

}  // namespace

ConnectionPool* ConnectionPool::OfThisThread() noexcept {
  return threadHasPool ? MadeForThisThread() : nullptr;
}

ConnectionPool* ConnectionPool::MadeForThisThread() noexcept {
  if (threadIsEnding) return nullptr;
  [[gnu::tls_model("initial-exec")]] static thread_local ConnectionPool pool;
  threadHasPool = true;
  return &pool;
}

ConnectionPool::~ConnectionPool() {
  threadIsEnding = true;
}

ConnectionPtr ConnectionPool::Take(const Endpoint& endpoint) noexcept {
  kept_.erase(std::remove_if(kept_.begin(), kept_.end(), [](const ConnectionPtr& c) { return IsTooOld(*c); }),
              kept_.end());
  // The freshest first: it has the best chance.
  for (std::size_t i = kept_.size(); i-- > 0;) {
    if (!(kept_[i]->Target() == endpoint)) continue;
    ConnectionPtr connection = std::move(kept_[i]);
    kept_.erase(kept_.begin() + static_cast<std::ptrdiff_t>(i));
    if (connection->IsAlive()) return connection;
  }
  return nullptr;
}

void ConnectionPool::Put(ConnectionPtr connection) noexcept {
  if (kept_.size() >= kMostKept) kept_.erase(kept_.begin());
  connection->NoteIdle();
  try {
    kept_.push_back(std::move(connection));
  } catch (...) {  // no memory to remember it: it closes
  }
}

}  // namespace qv

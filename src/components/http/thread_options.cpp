#include "components/http/thread_options.h"

#include "components/http/connection_pool.h"

namespace qv {
namespace {

ThreadHttpOptions& Stored() noexcept {
  static thread_local ThreadHttpOptions stored;
  return stored;
}

}  // namespace

ThreadHttpOptions CurrentThreadHttpOptions() noexcept {
  return Stored();
}

void SetThreadHttpOptions(const HttpOptions& options, IHttpProgress* progress) {
  Stored().options = options;
  Stored().progress = IHttpProgressPtr(progress);
}

void CloseKeptConnections() {
  if (ConnectionPool* pool = ConnectionPool::OfThisThread()) pool->Clear();
}

}  // namespace qv

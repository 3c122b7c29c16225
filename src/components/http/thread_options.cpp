#include "components/http/thread_options.h"

#include "components/http/connection_pool.h"

namespace qv {
namespace {

// A listener that calls back when the thread lets it go finds none here.
struct EndingOptions : ThreadHttpOptions {
  EndingOptions() = default;
  EndingOptions(const EndingOptions&) = delete;
  EndingOptions& operator=(const EndingOptions&) = delete;
  ~EndingOptions() { progress.reset(); }
};

// Until then no object with a destructor is made, since the C library ends the process when it has no memory
// to remember it.
[[gnu::tls_model("initial-exec")]] thread_local bool areSet = false;

ThreadHttpOptions& Stored() noexcept {
  [[gnu::tls_model("initial-exec")]] static thread_local EndingOptions stored;
  return stored;
}

}  // namespace

ThreadHttpOptions CurrentThreadHttpOptions() noexcept {
  return areSet ? Stored() : ThreadHttpOptions();
}

void SetThreadHttpOptions(const HttpOptions& options, IHttpProgress* progress) {
  areSet = true;
  Stored().options = options;
  Stored().progress = IHttpProgressPtr(progress);
}

void CloseKeptConnections() {
  if (ConnectionPool* pool = ConnectionPool::OfThisThread()) pool->Clear();
}

}  // namespace qv

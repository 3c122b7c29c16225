#include "components/http/thread_options.h"

#include "components/http/connection_pool.h"

namespace qv {
namespace {

// Until they are set no object with a destructor is made, since the C library ends the process when it has no
// memory to remember it.
[[gnu::tls_model("initial-exec")]] thread_local bool areSet = false;

// A listener that calls back when the thread lets it go finds none here, and a session that is made later the
// limits of everybody.
struct EndingOptions : ThreadHttpOptions {
  EndingOptions() = default;
  EndingOptions(const EndingOptions&) = delete;
  EndingOptions& operator=(const EndingOptions&) = delete;
  ~EndingOptions() {
    areSet = false;
    options = HttpOptions();
    progress.reset();
  }
};

EndingOptions& Stored() noexcept {
  [[gnu::tls_model("initial-exec")]] static thread_local EndingOptions stored;
  return stored;
}

}  // namespace

ThreadHttpOptions CurrentThreadHttpOptions() {
  if (areSet) return Stored();
  return {DefaultHttpOptions(), IHttpProgressPtr()};
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

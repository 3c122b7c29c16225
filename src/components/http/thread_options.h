// What SetThreadHttpOptions said last on this thread.
#pragma once

#include "qvscriptwells/http_component.h"

namespace qv {

struct ThreadHttpOptions {
  HttpOptions options;
  IHttpProgressPtr progress;
};

ThreadHttpOptions CurrentThreadHttpOptions() noexcept;

}  // namespace qv

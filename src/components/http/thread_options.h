// The options of the last SetThreadHttpOptions on this thread, else the defaults of the registry.
#pragma once

#include "qvscriptwells/http_component.h"

namespace qv {

struct ThreadHttpOptions {
  HttpOptions options;
  IHttpProgressPtr progress;
};

// Throws for lack of memory, when it reads the registry for the first time.
ThreadHttpOptions CurrentThreadHttpOptions();

}  // namespace qv

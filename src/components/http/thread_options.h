// What SetThreadHttpOptions said last on this thread, else the defaults of the registry.
#pragma once

#include "qvscriptwells/http_component.h"

namespace qv {

struct ThreadHttpOptions {
  HttpOptions options;
  IHttpProgressPtr progress;
};

// Throws for lack of memory, which the first reading of the registry needs.
ThreadHttpOptions CurrentThreadHttpOptions();

}  // namespace qv

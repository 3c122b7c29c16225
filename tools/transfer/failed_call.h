// Failures of the library as this program reports them.
#pragma once

#include <new>

#include "scriptwells/error.h"
#include "tools/report/failure.h"

namespace qv::cli {

Failure FailureOf(const scriptwells::Error& error);

// Makes calls of the library. Throws Failure for its errors.
template <class Calls>
auto Translated(const Calls& calls) {
  try {
    return calls();
  } catch (const scriptwells::Error& error) {
    throw FailureOf(error);
  } catch (const std::bad_alloc&) {
    throw Failure(ExitStatus::kFault, "out of memory");
  }
}

}  // namespace qv::cli

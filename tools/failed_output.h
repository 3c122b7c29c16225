// Standard output that takes no more.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/failure.h"

namespace qv::cli {

// The failure (kLocal) of a write to `out`, with these words. A reader that went away, as `head` does, wanted
// no more: that failure is silent.
Failure FailedOutput(const std::ostream& out, const std::string& words);

}  // namespace qv::cli

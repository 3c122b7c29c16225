// The strict reader behind ParseDuration, without any object.
#pragma once

#include "tools/object_text.h"

namespace qv::cli {

// Throws Failure (kLocal) with the reason alone.
DurationFields ScanDuration(const std::string& text);

}  // namespace qv::cli

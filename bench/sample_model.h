#pragma once

#include <string>

#include "qvscriptwells/objects.h"

namespace qv::bench {

// A model with a session that the server did not open, so that every request is an Execute.
IConnectionModelPtr SampleModel(const std::string& url);

}  // namespace qv::bench

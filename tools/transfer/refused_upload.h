// An upload that the server refused, without which the script runs.
#pragma once

#include <string>

#include "scriptwells/options.h"

namespace qv::cli {

// The warning for an exchange that is one; else empty.
std::string RefusedUpload(const scriptwells::Exchange& exchange);

}  // namespace qv::cli

// Odd answers as on the command line: "cut+ns2,n=3" or "stall,p=0.1,seed=7".
#pragma once

#include <string>

#include "devservice/values/odd_order.h"

namespace qv::cli {

// Without "n" or "p" all requests get them. Throws Failure (kUsage) that quotes the text and gives the
// reason.
devservice::OddOrder ParseOddOrder(const std::string& text);

}  // namespace qv::cli

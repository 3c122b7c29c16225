// `scriptwells describe`
#pragma once

#include <iosfwd>

#include "tools/exit_status.h"
#include "tools/options.h"

namespace qv::cli {

// Prints the interfaces, one of them, or one member ("Parameters", "IParameters", "Parameters.Add", in any
// case). Throws Failure: kUsage for a wrong name, with the object that has such a member, or else with the
// nearest name when there is one.
ExitStatus DescribeCommand(const DescribeOptions& options, std::ostream& out);

}  // namespace qv::cli

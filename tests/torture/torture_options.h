// The command line that torture programs share.
#pragma once

#include "torture/gate.h"

namespace qv::torture {

// Returns the exit code: 0 when nothing failed, 1 when something did, 2 for a wrong command line.
int TortureMain(int argc, char** argv, Gate& gate);

}  // namespace qv::torture

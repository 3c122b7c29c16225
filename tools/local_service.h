// The development service as this program runs it.
#pragma once

#include <string>
#include <vector>

#include "devservice/service.h"

namespace qv::cli {

// This program again, as the process that runs scripts. Throws Failure (kLocal) when its own path is not
// known.
std::vector<std::string> WorkerCommand();

// Starts the service; its failures become Failure (kLocal).
void StartService(devservice::Service& service);

}  // namespace qv::cli

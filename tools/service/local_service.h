// The development service as this program runs it.
#pragma once

#include <string>
#include <vector>

#include "devservice/service.h"

namespace qv::cli {

// The command that starts the script worker. Throws as ScriptWorker (own_files.h).
std::vector<std::string> WorkerCommand();

// The options that all services of this program share: worker and namespaces. Throws as WorkerCommand.
devservice::ServiceOptions CommonServiceOptions();

// A random user name and password. Throws Failure (kLocal) if the system has no random numbers.
devservice::ServiceUser RandomUser();

// Starts the service, with a worker unless that is none. Throws Failure (kLocal).
void StartService(devservice::Service& service, devservice::StartedWorker first = {});

}  // namespace qv::cli

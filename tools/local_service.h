// The development service as this program runs it.
#pragma once

#include <string>
#include <vector>

#include "devservice/service.h"

namespace qv::cli {

// This program again, as the process that runs scripts. Throws Failure (kLocal) when its own path is not
// known.
std::vector<std::string> WorkerCommand();

// What this program was built with, such as "http://quorvane.example".
std::string NamespaceHost();

// The namespace of script documents, on that host.
std::string ScriptNamespace();

// What every service of this program has in common: its worker and its namespaces. Throws as WorkerCommand.
devservice::ServiceOptions CommonServiceOptions();

// A user name and a password that nobody can guess. Throws Failure (kLocal) when the system has no random
// numbers.
devservice::ServiceUser RandomUser();

// Starts the service; its failures become Failure (kLocal).
void StartService(devservice::Service& service);

}  // namespace qv::cli

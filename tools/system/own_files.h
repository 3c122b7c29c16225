// The files that belong to this program: found from its own file, so that the installation may move.
#pragma once

#include <string>

namespace qv::cli {

// All give the path in the installation, else in the build tree. If the file is in neither, the path in the
// installation. Throw Failure (kLocal) if the program's own path is unknown.

// The library of the commands that call a server.
std::string CommandsLibrary();

// That of the commands that run a service.
std::string ServiceLibrary();

// That of the commands that look into servers and messages.
std::string InspectLibrary();

// That of the parts which need the XML library.
std::string XmlLibrary();

// Those of the shell, without and with a service.
std::string ShellLibrary();
std::string LocalShellLibrary();

// The program that runs scripts for a service.
std::string ScriptWorker();

}  // namespace qv::cli

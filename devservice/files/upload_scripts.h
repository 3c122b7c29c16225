// The two script documents that clients run to get the address for an upload.
#pragma once

#include <string>
#include <vector>

namespace qv::devservice {

// Writes these files below a client's home directory, unless something of that name exists already:
//   ClientScripts/UploadScript.xml                     asks for the address of a new ticket
//   ClientScripts/UploadScriptWithoutTicketdId.xml     asks for that of the ticket in `parameters.fileTicket`
// The spelling is the one that clients look for. Missing directories are created. Each file is written whole
// under another name and then renamed, so no reader sees half of one, and an existing file is never replaced.
//
// `directory` is a native path; `namespaceHost` has to equal that of the service and its clients. Returns the
// paths of the files that were written, which may be none. Throws std::runtime_error with a message.
// Any thread.
std::vector<std::string> InstallUploadScripts(const std::string& directory,
                                              const std::string& namespaceHost = "http://quorvane.example");

}  // namespace qv::devservice

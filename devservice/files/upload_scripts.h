// The two script documents that clients run to learn where a file is to be uploaded.
#pragma once

#include <string>
#include <vector>

namespace qv::devservice {

// Writes these below a client's home directory, unless something of that name stands there already:
//   ClientScripts/UploadScript.xml                     asks for the address of a new ticket
//   ClientScripts/UploadScriptWithoutTicketdId.xml     asks for that of the ticket in `parameters.fileTicket`
// The spelling is the one that clients look for. Missing directories are made. Each file is written whole
// under another name and then renamed, so no reader sees half of one, and an existing file is left alone even
// when it appears meanwhile.
//
// `directory` is a native path; `namespaceHost` has to equal that of the service and its clients. Returns the
// paths of the files that were written, which may be none. Throws std::runtime_error with words for people.
// Any thread.
std::vector<std::string> InstallUploadScripts(const std::string& directory,
                                              const std::string& namespaceHost = "http://quorvane.example");

}  // namespace qv::devservice

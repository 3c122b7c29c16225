// Addresses in the forms that the interfaces below read. Each function throws Error (kAddress).
#pragma once

#include <string>

namespace scriptwells {

// "http://host:port" or https, with the default port added and the scheme in lower case, and with the path
// without "/" at its end.
std::string CheckedServer(const std::string& url);

// The same for the URL of a file, which has a path.
std::string CheckedFileUrl(const std::string& url);

// "host" or "host:port", unchanged; empty for none.
std::string CheckedProxy(const std::string& proxy);

}  // namespace scriptwells

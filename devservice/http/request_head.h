// Converts the HTTP library's requests to ours.
#pragma once

#include <httplib.h>

#include <string>

#include "devservice/http/http_message.h"

namespace qv::devservice {

// The path of a request target. A request through a proxy names the whole URL.
std::string PathOf(const std::string& target);

// Everything but the body. `path` is the request's real path, which is hidden from the library. `ownHost`
// ("127.0.0.1:40123") replaces a missing or invalid Host header. Pure; any thread.
HttpRequest MakeRequestHead(const httplib::Request& request, const std::string& path,
                            const std::string& ownHost);

}  // namespace qv::devservice

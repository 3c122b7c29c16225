// From the HTTP library's requests to ours.
#pragma once

#include <httplib.h>

#include <string>

#include "devservice/http/http_message.h"

namespace qv::devservice {

// The path of a request target. A request that came by way of a proxy names the whole URL.
std::string PathOf(const std::string& target);

// Everything but the body. `path` is the request's own, which the library does not get to see. `ownHost`
// ("127.0.0.1:40123") stands in for a Host header that is missing or none. Pure; any thread.
HttpRequest MakeRequestHead(const httplib::Request& request, const std::string& path,
                            const std::string& ownHost);

}  // namespace qv::devservice

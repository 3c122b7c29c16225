// Addresses as users write them, checked and converted to the form that the library reads.
#pragma once

#include <string>

namespace qv::cli {

// Takes "http://host[:port][/path]" or the same with https, the scheme in any case. The result has no "/" at
// its end and always a port, since the library's default is 80 for https, too. Throws Failure (kLocal).
std::string CheckServer(const std::string& url);

// The same for the address of a file, "http://host[:port]/path[?query]". Throws Failure (kLocal).
std::string CheckFileUrl(const std::string& url);

// "http://host:port" of an address from CheckServer or CheckFileUrl.
std::string OriginOf(const std::string& url);

// Takes "host", "host:port" or an empty text, and returns it unchanged. Throws Failure (kLocal) for anything
// else.
std::string CheckProxy(const std::string& proxy);

}  // namespace qv::cli

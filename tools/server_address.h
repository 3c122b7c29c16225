// The server as a user writes it, checked and brought into the form that the library understands.
#pragma once

#include <string>

namespace qv::cli {

// "http://host[:port][/path]" or the same with https, the scheme in any case. The result has no "/" at its
// end and always a port: the library takes 80 for every scheme, while users of https mean 443. Throws Failure
// (kLocal) with the reason.
std::string CheckServer(const std::string& url);

// The address of a file, "http://host[:port]/path[?query]" or the same with https, brought into the same
// form. Throws Failure (kLocal) with the reason.
std::string CheckFileUrl(const std::string& url);

// "http://host:port" of an address that CheckServer or CheckFileUrl gave.
std::string OriginOf(const std::string& url);

// "host" or "host:port", also empty. Throws Failure (kLocal).
std::string CheckProxy(const std::string& proxy);

}  // namespace qv::cli

// The users of a development service, from a file.
#pragma once

#include <string>
#include <vector>

#include "devservice/service.h"

namespace qv::cli {

// One "name:password" per line; the password may hold ':' and be empty. Empty lines, and lines that begin
// with '#', do not count. Throws Failure (kLocal) with the line's number, also for a text without any user,
// since a service without users would let everyone in.
std::vector<devservice::ServiceUser> ParseUsers(const std::string& text);

}  // namespace qv::cli

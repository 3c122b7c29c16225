// The users of a development service, from a file.
#pragma once

#include <string>
#include <vector>

#include "devservice/service.h"

namespace qv::cli {

// Parses one "name:password" per line; the password may hold ':' and be empty. Ignores empty lines and lines
// that begin with '#'. Throws Failure (kLocal) with the line's number, and for a text without users, since a
// service without users accepts everyone.
std::vector<devservice::ServiceUser> ParseUsers(const std::string& text);

}  // namespace qv::cli

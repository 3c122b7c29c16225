#include "tools/service/users_file.h"

#include <sstream>
#include <stdexcept>

#include "scriptwells/session.h"
#include "tools/report/failure.h"

namespace qv::cli {

namespace {

devservice::ServiceUser ParseUser(const std::string& line) {
  const std::size_t colon = line.find(':');
  if (colon == std::string::npos || colon == 0) throw std::runtime_error("not of the form name:password");
  devservice::ServiceUser user{line.substr(0, colon), line.substr(colon + 1)};
  // No client could send others.
  scriptwells::Session::Check("http://localhost", {user.name, user.password}, {});
  return user;
}

}  // namespace

std::vector<devservice::ServiceUser> ParseUsers(const std::string& text) {
  std::vector<devservice::ServiceUser> users;
  std::istringstream lines(text);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') continue;
    try {
      users.push_back(ParseUser(line));
    } catch (const std::runtime_error& error) {
      throw Failure(ExitStatus::kLocal, "users file, line " + std::to_string(number) + ": " + error.what());
    }
  }
  if (users.empty()) throw Failure(ExitStatus::kLocal, "the users file names no user");
  return users;
}

}  // namespace qv::cli

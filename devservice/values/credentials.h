// Who may open a session, and who asks for one.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

// One user who may open a session. Both texts are UTF-8 and compared exactly.
struct ServiceUser {
  std::string name;
  std::string password;
};

// The content of a connection string, "key=value;key=value". Later pairs win, unknown keys are ignored.
struct Credentials {
  std::string userName;
  std::string password;
  std::string replicaId;
};
Credentials ParseConnectionString(std::string_view text);

}  // namespace qv::devservice

// The objects of the interfaces below that one session needs. Each function throws qv::_com_error.
#pragma once

#include <string>

#include "qvscriptwells/host_services.h"
#include "qvscriptwells/objects.h"
#include "scriptwells/options.h"

namespace scriptwells {

class ScriptClient {
 public:
  // `server` is from CheckedServer and `proxy` from CheckedProxy. `id`: of a session to adopt; else empty.
  ScriptClient(const std::string& server, const std::string& proxy, const Credentials& credentials,
               const std::string& id);

  void Open(const Credentials& credentials);
  qv::IConnectionModel& Model() const noexcept { return *model_; }
  // Empty if there is no session.
  std::string Id() const;

 private:
  qv::WideString ConnectionText(const Credentials& credentials) const;

  qv::IQvClientServicesPtr services_;
  qv::IQvScriptwellsPtr client_;
  qv::IConnectionModelPtr model_;
};

}  // namespace scriptwells

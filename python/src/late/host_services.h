// The services of a host: the client asks them for its user and reports its session.
#pragma once

#include <pybind11/pybind11.h>

#include "apartment.h"
#include "qvscriptwells/simple_host.h"
#include "qvscriptwells/variant.h"

namespace scriptwells::late {

class HostServices {
 public:
  explicit HostServices(const qv::SimpleHostUser& user);

  qv::SimpleHostSession Session() const;
  // The provider, as a value for the client's Init.
  qv::Variant ToVariant() const;

 private:
  explicit HostServices(const qv::IQvClientServicesPtr& services);

  ThreadBound<qv::ISimpleHost> host_;
  ThreadBound<qv::IQvServiceProvider> provider_;
};

void DefineHostServices(pybind11::module_& module);

}  // namespace scriptwells::late

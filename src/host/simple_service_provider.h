// The provider of CreateSimpleServiceProvider: it has one service.
#pragma once

#include "com/counted_object.h"
#include "qvscriptwells/simple_host.h"

namespace qv {

class SimpleServiceProvider final : public CountedObject<IQvServiceProvider> {
 public:
  // Keeps a reference to `services`, which may be null.
  explicit SimpleServiceProvider(IQvClientServices* services) noexcept : services_(services) {}

  HRESULT GetService(const WideString& name, IUnknown** service) noexcept override;

 private:
  IQvClientServicesPtr services_;
};

}  // namespace qv

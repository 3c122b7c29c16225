// The provider behind CreateSimpleServiceProvider: it knows one service.
#pragma once

#include "qvscriptwells/simple_host.h"

namespace qv {

class SimpleServiceProvider final : public IQvServiceProvider {
 public:
  // Starts with one reference, which the maker owns. Keeps a reference to `services`, which may be null.
  explicit SimpleServiceProvider(IQvClientServices* services) noexcept : services_(services) {}

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return ++count_; }
  std::uint32_t Release() noexcept override;

  HRESULT GetService(const WideString& name, IUnknown** service) noexcept override;

 private:
  ~SimpleServiceProvider() = default;

  std::uint32_t count_ = 1;
  IQvClientServicesPtr services_;
};

}  // namespace qv

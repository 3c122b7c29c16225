#include "host/simple_service_provider.h"

#include <new>

#include "qvscriptwells/com_error.h"

namespace qv {

HRESULT SimpleServiceProvider::GetService(const WideString& name, IUnknown** service) noexcept {
  if (service == nullptr) return E_POINTER;
  *service = nullptr;
  if (name.view() != kClientServicesName || !services_) return S_OK;
  services_->AddRef();
  *service = services_.get();
  return S_OK;
}

IQvServiceProviderPtr CreateSimpleServiceProvider(IQvClientServices* services) {
  IQvServiceProvider* provider = new (std::nothrow) SimpleServiceProvider(services);
  if (provider == nullptr) _com_raise_error(E_OUTOFMEMORY);
  return IQvServiceProviderPtr(provider);
}

}  // namespace qv

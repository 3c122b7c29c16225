#include "components/http/http_component_class.h"

#include <new>

#include "components/http/http_session.h"

namespace qv {

HRESULT CreateHttpComponent(const Guid& iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  HttpSession* made = new (std::nothrow) HttpSession;
  if (made == nullptr) return E_OUTOFMEMORY;
  const HttpSessionPtr session(made, false);
  return session->QueryInterface(iid, object);
}

}  // namespace qv

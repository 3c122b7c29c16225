#include "components/http/http_component_class.h"

#include "components/http/http_session.h"

namespace qv {

HRESULT CreateHttpComponent(const Guid& iid, void** object) try {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const HttpSessionPtr session(new HttpSession, false);
  return session->QueryInterface(iid, object);
} catch (...) {  // nothing else fails here
  return E_OUTOFMEMORY;
}

}  // namespace qv

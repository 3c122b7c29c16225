#include "components/recordlist/object_faces.h"

namespace qv {

HRESULT AnswerQueryFor(const ObjectFaces& faces, const Guid& iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (iid == IUnknown::kIid || iid == faces.iid) *object = faces.face;
  if (iid == ISupportErrorInfo::kIid) *object = faces.support;
  if (*object == nullptr) return E_NOINTERFACE;
  faces.support->AddRef();
  return S_OK;
}

}  // namespace qv

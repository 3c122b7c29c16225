// What the objects of a record list answer about themselves: each offers its own interface, IUnknown, which
// is the same pointer, and ISupportErrorInfo.
#pragma once

#include "qvscriptwells/unknown.h"

namespace qv {

struct ObjectFaces {
  Guid iid;  // the own interface
  void* face;
  ISupportErrorInfo* support;
};

// QueryInterface of the object with these faces.
HRESULT AnswerQueryFor(const ObjectFaces& faces, const Guid& iid, void** object) noexcept;

}  // namespace qv

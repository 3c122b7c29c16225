// Creation of components by class id. The library's own components are there from the start; a host or a test
// may put another class behind the same id, and the library then uses that one. Threads: any; the registry is
// one per process and guarded.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/unknown.h"

namespace qv {

constexpr std::uint32_t CLSCTX_ALL = 0x17;

// Makes one object and hands out `iid` of it with one reference, as IUnknown::QueryInterface does.
using ClassCreator = HRESULT (*)(const Guid& iid, void** object);

// Puts `creator` behind `classId` and returns the one that stood there, null if none. A null `creator`
// removes the class.
ClassCreator RegisterClassCreator(const Guid& classId, ClassCreator creator);

// REGDB_E_CLASSNOTREG for an unknown class, CLASS_E_NOAGGREGATION for a non-null `outer`, E_POINTER for a
// null `object`, else what the creator returns. `context` is there for callers that know COM; all values do
// the same.
HRESULT CoCreateInstance(const Guid& classId, IUnknown* outer, std::uint32_t context, const Guid& iid,
                         void** object);

// Starts an object that offers IRunnableObject; S_OK for one that does not. E_POINTER for null.
HRESULT OleRun(IUnknown* object);

}  // namespace qv

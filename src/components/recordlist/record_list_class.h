// The class of CLSID_RecordList.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/result_codes.h"

namespace qv {

// A ClassCreator (class_registry.h): creates an empty list and returns its `iid`.
HRESULT CreateRecordListComponent(const Guid& iid, void** object);

}  // namespace qv

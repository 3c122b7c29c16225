#include "platform/component.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"

namespace qv {

IRecordListPtr CreateRecordList() {
  const IUnknownPtr object = CreateComponent(CLSID_RecordList);
  return IRecordListPtr(static_cast<IRecordList*>(QueryFor(object.get(), IRecordList::kIid)), false);
}

}  // namespace qv

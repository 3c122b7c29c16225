#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {

IRecordListPtr CreateRecordList() {
  const IUnknownPtr object = CreateComponent(CLSID_RecordList);
  return As<IRecordList>(object);
}

}  // namespace qv

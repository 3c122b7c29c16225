#include "com/builtin_classes.h"

#include "components/http/http_session.h"
#include "components/recordlist/record_list_object.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/record_list.h"

namespace qv {

const BuiltinClass* BuiltinClasses() noexcept {
  static constexpr BuiltinClass kClasses[] = {{CLSID_HttpComponent, &CreateHttpComponent},
                                              {CLSID_RecordList, &CreateRecordListComponent},
                                              {Guid{}, nullptr}};
  return kClasses;
}

}  // namespace qv

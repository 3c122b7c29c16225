// The classes that hosts can create by id.
#include "automation/class_factory.h"
#include "automation/qv_scriptwells.h"
#include "com/builtin_classes.h"
#include "qvscriptwells/class_ids.h"

namespace qv {
namespace {

// The only class object, created on first use.
IClassFactory& ScriptwellsFactory() noexcept {
  static ClassFactory factory(&CreateQvScriptwellsObject);
  return factory;
}

struct MapRow {
  Guid classId;
  IClassFactory& (*factory)() noexcept;
};
constexpr MapRow kObjectMap[] = {{CLSID_QvScriptwells, &ScriptwellsFactory}};

}  // namespace

HRESULT OwnClassObject(const Guid& classId, const Guid& iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  for (const MapRow& row : kObjectMap)
    if (row.classId == classId) return row.factory().QueryInterface(iid, object);
  return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace qv

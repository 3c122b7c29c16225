#include "automation/dispatch_faces.h"
#include "com/counted_object.h"
#include "com/guarded.h"
#include "com/module.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/create_objects.h"
#include "values/parameter_impl.h"

namespace qv {
namespace {

using Logic = ParameterImpl;

// The Parameter object that hosts hold. It keeps itself alive while its value is copied, queried or released,
// since an object there may call back and release it.
class Parameter final : public CountedObject<ParameterDispatch, SupportsErrorInfo<IParameter>> {
 public:
  HRESULT SetValues(const WideString& key, const Variant& value) noexcept override {
    return logic_.Run([&](Logic& logic) {
      const IParameterPtr self(this);
      logic.SetValues(key, value);
    });
  }
  HRESULT get_ParamKey(WideString* key) noexcept override { return logic_.Get(key, &Logic::get_ParamKey); }
  HRESULT get_ParamValue(Variant* value) noexcept override {
    return logic_.Run(value, [&](Logic& logic) {
      const IParameterPtr self(this);
      *value = logic.get_ParamValue();
    });
  }
  HRESULT get_ParamTypeAsString(WideString* typeName) noexcept override {
    return logic_.Run(typeName, [&](Logic& logic) {
      const IParameterPtr self(this);
      *typeName = logic.get_ParamTypeAsString();
    });
  }

 private:
  ModuleLock lock_;
  GuardedLogic<Logic, CLSID_Parameter> logic_;
};

}  // namespace

IParameterPtr CreateParameter() {
  return IParameterPtr(new Parameter);
}

}  // namespace qv

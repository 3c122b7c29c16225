#include "automation/dispatch_faces.h"
#include "com/counted_object.h"
#include "com/guarded.h"
#include "com/module.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/create_objects.h"
#include "values/parameters_impl.h"

namespace qv {
namespace {

using Logic = ParametersImpl;

// The Parameters object that hosts hold. It keeps itself alive while values are copied or released, since
// objects among them may call back and release it.
class Parameters final : public CountedObject<ParametersDispatch, SupportsErrorInfo<IParameters>> {
 public:
  HRESULT Add(const WideString& key, const Variant& value, IParameter** added) noexcept override {
    return logic_.Run([&](Logic& logic) {
      const IParametersPtr self(this);
      IParameterPtr parameter = logic.Add(key, value);
      if (added != nullptr) *added = parameter.detach();
    });
  }
  HRESULT Remove(std::int16_t index) noexcept override {
    return logic_.Run([&](Logic& logic) {
      const IParametersPtr self(this);
      logic.Remove(index);
    });
  }
  HRESULT Find(std::int16_t index, IParameter** found) noexcept override {
    return logic_.Run(found, [&](Logic& logic) { *found = logic.Find(index).detach(); });
  }
  HRESULT Size(std::int16_t* size) noexcept override { return logic_.Get(size, &Logic::Size); }
  HRESULT Clear() noexcept override {
    return logic_.Run([&](Logic& logic) {
      const IParametersPtr self(this);
      logic.Clear();
    });
  }

 private:
  ModuleLock lock_;
  GuardedLogic<Logic, CLSID_Parameters> logic_;
};

}  // namespace

IParametersPtr CreateParameters() {
  return IParametersPtr(new Parameters);
}

}  // namespace qv

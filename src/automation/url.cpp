#include "automation/dispatch_faces.h"
#include "com/counted_object.h"
#include "com/guarded.h"
#include "com/module.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/create_objects.h"
#include "values/url_impl.h"

namespace qv {
namespace {

using Logic = UrlImpl;

// The Url object that hosts hold.
class Url final : public CountedObject<UrlDispatch, SupportsErrorInfo<IUrl>> {
 public:
  HRESULT get_UrlCaption(WideString* value) noexcept override {
    return logic_.Get(value, &Logic::get_UrlCaption);
  }
  HRESULT put_UrlCaption(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_UrlCaption);
  }
  HRESULT get_Url(WideString* value) noexcept override { return logic_.Get(value, &Logic::get_Url); }
  HRESULT put_Url(const WideString& value) noexcept override { return logic_.Put(value, &Logic::put_Url); }
  HRESULT ToString(WideString* text) noexcept override { return logic_.Get(text, &Logic::ToString); }

 private:
  ModuleLock lock_;
  GuardedLogic<Logic, CLSID_Url> logic_;
};

}  // namespace

IUrlPtr CreateUrl() {
  return IUrlPtr(new Url);
}

}  // namespace qv

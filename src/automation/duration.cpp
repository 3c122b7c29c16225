#include "automation/dispatch_faces.h"
#include "com/counted_object.h"
#include "com/guarded.h"
#include "com/module.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "values/duration_impl.h"

namespace qv {
namespace {

using Logic = DurationImpl;

// The Duration object that hosts hold.
class Duration final : public CountedObject<DurationDispatch, IDurationRaw, SupportsErrorInfo<IDuration>> {
 public:
  HRESULT get_Day(std::int16_t* value) noexcept override { return logic_.Get(value, &Logic::get_Day); }
  HRESULT put_Day(std::int16_t value) noexcept override { return logic_.Put(value, &Logic::put_Day); }
  HRESULT get_Month(std::int16_t* value) noexcept override { return logic_.Get(value, &Logic::get_Month); }
  HRESULT put_Month(std::int16_t value) noexcept override { return logic_.Put(value, &Logic::put_Month); }
  HRESULT get_Year(std::int16_t* value) noexcept override { return logic_.Get(value, &Logic::get_Year); }
  HRESULT put_Year(std::int16_t value) noexcept override { return logic_.Put(value, &Logic::put_Year); }
  HRESULT get_Hour(std::int16_t* value) noexcept override { return logic_.Get(value, &Logic::get_Hour); }
  HRESULT put_Hour(std::int16_t value) noexcept override { return logic_.Put(value, &Logic::put_Hour); }
  HRESULT get_Min(std::int16_t* value) noexcept override { return logic_.Get(value, &Logic::get_Min); }
  HRESULT put_Min(std::int16_t value) noexcept override { return logic_.Put(value, &Logic::put_Min); }
  HRESULT get_Sec(double* value) noexcept override { return logic_.Get(value, &Logic::get_Sec); }
  HRESULT put_Sec(double value) noexcept override { return logic_.Put(value, &Logic::put_Sec); }
  HRESULT get_Negative(VARIANT_BOOL* value) noexcept override {
    return logic_.Get(value, &Logic::get_Negative);
  }
  HRESULT put_Negative(VARIANT_BOOL value) noexcept override {
    return logic_.Put(value, &Logic::put_Negative);
  }
  HRESULT SetText(const WideString& text) noexcept override { return logic_.Put(text, &Logic::SetText); }
  HRESULT GetText(WideString* text) noexcept override { return logic_.Get(text, &Logic::GetText); }

 private:
  ModuleLock lock_;
  GuardedLogic<Logic, CLSID_Duration> logic_;
};

}  // namespace

IDurationPtr CreateDuration() {
  return IDurationPtr(new Duration);
}

IDurationPtr CreateDuration(const WideString& text) {
  const boost::intrusive_ptr<Duration> duration(new Duration);
  ThrowIfFailed(duration->SetText(text));
  return duration;
}

}  // namespace qv

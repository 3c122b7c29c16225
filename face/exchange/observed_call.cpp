#include "face/exchange/observed_call.h"

#include "face/exchange/call_tap.h"
#include "face/exchange/explain_failure.h"
#include "face/exchange/thread_hooks.h"

namespace scriptwells {

class ObservedCall::Impl {
 public:
  Impl(const CallSettings& given, Purpose purposeOfCall)
      : settings(given),
        purpose(purposeOfCall),
        home(given.home.empty() ? qv::WideString() : qv::FromUtf8(given.home)),
        tap(given, purposeOfCall),
        hooks(&tap, given.home.empty() ? nullptr : &home) {}

  const CallSettings& settings;
  const Purpose purpose;
  const qv::WideString home;
  CallTap tap;
  const ThreadHooks hooks;
};

ObservedCall::ObservedCall(const CallSettings& settings, Purpose purpose)
    : impl_(std::make_unique<Impl>(settings, purpose)) {}

ObservedCall::~ObservedCall() = default;

void ObservedCall::Finish() {
  impl_->tap.EndExchange();
  impl_->tap.RethrowFromListener();
}

void ObservedCall::Explain(const qv::_com_error& error, const std::string& document) const {
  impl_->tap.EndExchange();
  impl_->tap.RethrowFromListener();
  ThrowExplained({impl_->purpose, impl_->settings, impl_->tap.Last(), impl_->tap.RefusedUpload(), document},
                 error);
}

// Files may come from and go to other servers.
bool ObservedCall::CouldNotConnect() const noexcept {
  const ExchangeRecord& last = impl_->tap.Last();
  return last.purpose != Purpose::kUpload && last.purpose != Purpose::kDownload &&
         scriptwells::CouldNotConnect(last);
}

const std::string& ObservedCall::AnswerText() const noexcept {
  return impl_->tap.AnswerText();
}

}  // namespace scriptwells

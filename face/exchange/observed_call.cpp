#include "face/exchange/observed_call.h"

#include "face/exchange/explain_failure.h"

namespace scriptwells {

ObservedCall::ObservedCall(const CallSettings& settings, Purpose purpose)
    : settings_(settings),
      purpose_(purpose),
      home_(settings.home.empty() ? qv::WideString() : qv::FromUtf8(settings.home)),
      tap_(settings, purpose),
      hooks_(&tap_, settings.home.empty() ? nullptr : &home_) {}

void ObservedCall::Finish() {
  tap_.EndExchange();
  tap_.RethrowFromListener();
}

void ObservedCall::Explain(const qv::_com_error& error, const std::string& document) {
  tap_.EndExchange();
  tap_.RethrowFromListener();
  ThrowExplained({purpose_, settings_, tap_.Last(), tap_.RefusedUpload(), document}, error);
}

// Files may come from and go to other servers.
bool ObservedCall::CouldNotConnect() const noexcept {
  const ExchangeRecord& last = tap_.Last();
  return last.purpose != Purpose::kUpload && last.purpose != Purpose::kDownload &&
         scriptwells::CouldNotConnect(last);
}

}  // namespace scriptwells

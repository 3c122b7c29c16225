// The library reports only that a call could not be made, and not which server was not reached and why. So
// this program registers its own class as the HTTP component. It passes every operation on to the built-in
// component and notes the results.
#pragma once

#include <string>
#include <vector>

#include "qvscriptwells/class_registry.h"
#include "tools/transfer/exchange_note.h"
#include "tools/transfer/reporting_request.h"
#include "tools/transfer/time_budget.h"

namespace qv::cli {

// Replaces the HTTP component during its lifetime. One object at a time, on the thread that uses the library.
class ReportingHttp {
 public:
  // `proxy`, "host:port", replaces the proxy that the library passes, which may lack the port. `progress` is
  // notified of each file, and no exchange takes longer than what is left of `budget`; both must outlive this
  // object, or are null. `savesHidden`: see FaultOfName in saved_name.h.
  explicit ReportingHttp(std::string proxy, TransferProgress* progress = nullptr, bool savesHidden = false,
                         const TimeBudget* budget = nullptr);
  ~ReportingHttp();
  ReportingHttp(const ReportingHttp&) = delete;
  ReportingHttp& operator=(const ReportingHttp&) = delete;

  const ExchangeNote& Note() const noexcept { return reports_.note; }
  void Forget() { reports_.note = ExchangeNote(); }
  // All so far, in order.
  const std::vector<RefusedUpload>& RefusedUploads() const noexcept { return reports_.refusedUploads; }

 private:
  static HRESULT Create(const Guid& iid, void** object);

  std::string proxy_;
  const TimeBudget* budget_;
  HttpReports reports_;
  ClassCreator builtIn_;
};

}  // namespace qv::cli

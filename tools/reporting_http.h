// The library tells a host that a call could not be made, and keeps the transport's words to itself. This
// program wants to say which server was not reached and why: it puts a class of its own behind the HTTP
// component's id, which hands every operation on to the built-in one and notes what came of it.
#pragma once

#include <string>
#include <vector>

#include "qvscriptwells/class_registry.h"
#include "tools/exchange_note.h"
#include "tools/reporting_request.h"
#include "tools/time_budget.h"

namespace qv::cli {

// Stands behind the component's class id for as long as it lives; one at a time, on the thread that uses the
// library.
class ReportingHttp {
 public:
  // `proxy`, "host:port", takes the place of what the library passes: its calls leave out the port.
  // `progress` is told which file a transfer is about, and no exchange takes longer than what is left of
  // `budget`. Both outlive this object, or are null. `savesHidden`: see FaultOfName in saved_name.h.
  explicit ReportingHttp(std::string proxy, TransferProgress* progress = nullptr, bool savesHidden = false,
                         const TimeBudget* budget = nullptr);
  ~ReportingHttp();
  ReportingHttp(const ReportingHttp&) = delete;
  ReportingHttp& operator=(const ReportingHttp&) = delete;

  const ExchangeNote& Note() const noexcept { return reports_.note; }
  void Forget() { reports_.note = ExchangeNote(); }
  // All that were made so far, in their order.
  const std::vector<RefusedUpload>& RefusedUploads() const noexcept { return reports_.refusedUploads; }

 private:
  static HRESULT Create(const Guid& iid, void** object);

  std::string proxy_;
  const TimeBudget* budget_;
  HttpReports reports_;
  ClassCreator builtIn_;
};

}  // namespace qv::cli

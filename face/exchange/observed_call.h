// Observes the exchanges of one call of the library below: limits, cancels and reports them, and explains a
// failure better than the fixed texts of the library do.
#pragma once

#include <string>

#include "face/exchange/call_settings.h"
#include "face/exchange/call_tap.h"
#include "face/exchange/thread_hooks.h"
#include "qvscriptwells/com_error.h"
#include "scriptwells/options.h"

namespace scriptwells {

// On the stack, around one call, on the thread of the call. Observations nest: the innermost counts.
class ObservedCall {
 public:
  // `settings` must outlive the object. `purpose` is that of the call: kOpenSession, kCloseSession, kExecute
  // or kDownload. Sets options, listener and home directory of the thread. Throws std::bad_alloc.
  ObservedCall(const CallSettings& settings, Purpose purpose);
  // Restores what was set for the thread, also options that the host has set with SetThreadHttpOptions.
  ~ObservedCall() = default;
  ObservedCall(const ObservedCall&) = delete;
  ObservedCall& operator=(const ObservedCall&) = delete;

  // After a success: rethrows what a listener threw.
  void Finish();
  // Rethrows what a listener threw, or throws the Error for the failure of the call. `document` names the
  // file of a script document.
  [[noreturn]] void Explain(const qv::_com_error& error, const std::string& document = {});

  // Whether an exchange failed before there was a connection.
  bool CouldNotConnect() const noexcept;
  // The body of the last answer, with keepAnswer; its bytes, in UTF-8.
  const std::string& AnswerText() const noexcept { return tap_.AnswerText(); }

 private:
  const CallSettings& settings_;
  const Purpose purpose_;
  const qv::WideString home_;
  CallTap tap_;
  const ThreadHooks hooks_;
};

}  // namespace scriptwells

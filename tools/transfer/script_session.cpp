#include "tools/transfer/script_session.h"

#include <algorithm>

#include "face/session/session_secrets.h"
#include "tools/system/interrupt.h"
#include "tools/transfer/failed_call.h"
#include "tools/transfer/refused_upload.h"

namespace qv::cli {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kLastWait{2000};

}  // namespace

ScriptSession::ScriptSession(const SessionSettings& settings)
    : settings_(settings), progress_(settings.showProgress) {
  const milliseconds total = settings.options.totalTimeout;
  if (total.count() > 0 && !settings.manyCalls) end_ = steady_clock::now() + total;
  if (!settings.traceFile.empty()) trace_.emplace(settings.traceFile);
}

scriptwells::Options ScriptSession::Options() {
  scriptwells::Options options = settings_.options;
  options.closeTimeout = kLastWait;
  options.cancel = InterruptToken();
  options.listener = [this](const scriptwells::Exchange& exchange) { Look(exchange); };
  const bool mayTrace = trace_ || settings_.manyCalls;
  options.listenerBodies = mayTrace;
  // Nothing is shown without a trace, but a file's name may look like a password.
  options.showSecrets = settings_.options.showSecrets || !mayTrace;
  if (progress_.IsShown())
    options.progress = [this](const scriptwells::Progress& progress) { progress_.Update(progress); };
  return options;
}

// At the end of each exchange.
void ScriptSession::Look(const scriptwells::Exchange& exchange) {
  progress_.End();
  const std::string refused = RefusedUpload(exchange);
  if (!refused.empty()) refusedUploads_.push_back(refused);
  if (trace_) trace_->Write(exchange);
}

// At least 1, since 0 is no limit.
milliseconds ScriptSession::TimeLeft() const {
  return std::max(milliseconds(1), std::chrono::duration_cast<milliseconds>(*end_ - steady_clock::now()));
}

scriptwells::RunOptions ScriptSession::WithinTimeLeft() const {
  scriptwells::RunOptions options;
  if (end_) options.totalTimeout = TimeLeft();
  options.language = language_;
  return options;
}

// An interrupt may also show as another failure, such as of reading a file.
template <class Call>
auto ScriptSession::Called(const Call& call) {
  try {
    return Translated(call);
  } catch (const Failure&) {
    progress_.End();
    ThrowIfInterrupted();
    throw;
  }
}

void ScriptSession::Open() {
  Called([this] {
    if (settings_.usid.empty())
      session_.emplace(settings_.server, settings_.credentials, Options());
    else
      session_ = scriptwells::Session::Adopt(settings_.server, settings_.usid, Options());
  });
}

scriptwells::Value ScriptSession::Run(const std::string& script, const scriptwells::Arguments& arguments) {
  return Called([&] { return session_->Run(script, arguments, WithinTimeLeft()); });
}

scriptwells::Value ScriptSession::RunDocument(const std::string& file,
                                              const scriptwells::Arguments& arguments) {
  return Called([&] { return session_->RunDocument(file, arguments, WithinTimeLeft()); });
}

std::string ScriptSession::Download(const std::string& url, const std::string& directory) {
  return Called([&] { return session_->Download(url, directory, WithinTimeLeft()).native(); });
}

void ScriptSession::Close() {
  if (settings_.usid.empty() && session_) CloseAdopted();
}

// A session is closed even if there is no time left, but only tried once.
void ScriptSession::CloseAdopted() {
  milliseconds within = end_ ? TimeLeft() : milliseconds(0);
  if (Interrupted() || (end_ && within < kLastWait)) within = kLastWait;
  try {
    Translated([&] { session_->Close(within); });
  } catch (const Failure&) {
    LeaveOpen();
    throw;
  }
}

void ScriptSession::LeaveOpen() {
  session_->Release();
}

void ScriptSession::TraceInto(const std::string& file) {
  trace_.reset();
  if (!file.empty()) trace_.emplace(file);
}

std::vector<std::string> ScriptSession::Secrets() const {
  return SecretsOf(*session_);
}

std::vector<std::string> ScriptSession::TakeWarnings() {
  std::vector<std::string> warnings;
  warnings.swap(refusedUploads_);
  if (trace_ && !trace_->IsComplete())
    warnings.push_back("the trace " + trace_->Path() + " could not be written in full");
  return warnings;
}

}  // namespace qv::cli

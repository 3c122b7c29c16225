#include "tools/transfer/script_session.h"

#include <cstring>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/native_path.h"
#include "tools/system/interrupt.h"
#include "tools/transfer/explain_failure.h"

namespace qv::cli {

namespace {

constexpr std::int64_t kLastWait = 2000;

void Wipe(std::string& secret) noexcept {
  explicit_bzero(secret.data(), secret.size());
  secret.clear();
}

std::int64_t AtMost(std::int64_t wait, std::int64_t limit) {
  return wait == 0 || wait > limit ? limit : wait;
}

// Null without parameters, for which the protocol has a separate form.
IParametersPtr MakeList(const std::vector<ScriptParameter>& parameters) {
  if (parameters.empty()) return IParametersPtr();
  IParametersPtr list = CreateParameters();
  for (const ScriptParameter& parameter : parameters)
    ThrowIfFailed(list->Add(FromUtf8(parameter.name), parameter.value, nullptr), list.get(),
                  IParameters::kIid);
  return list;
}

}  // namespace

SessionSettings::~SessionSettings() {
  Wipe(password);
  Wipe(usid);
}

ScriptSession::ScriptSession(const SessionSettings& settings)
    : settings_(settings),
      budget_(settings.http.totalTimeout),
      progress_(settings.showProgress),
      http_(settings.proxy, &progress_, settings.http.replaceFiles, &budget_),
      client_(CreateQvScriptwells()) {
  SimpleHostUser user;
  user.userName = FromUtf8(settings.user);
  user.replicaId = FromUtf8(settings.replica);
  if (!settings.usid.empty()) user.usid = FromUtf8(settings.usid);
  services_ = CreateSimpleHost(user);
  SetThreadHttpOptions(settings_.http, &progress_);
}

ScriptSession::~ScriptSession() {
  model_.reset();
  client_.reset();
  CloseKeptConnections();
  SetThreadHttpOptions(HttpOptions(), nullptr);
}

// The model has the session of the settings, if they name one.
void ScriptSession::SetServer() {
  const IQvClientServiceRawPtr raw = As<IQvClientServiceRaw>(client_);
  ThrowIfFailed(raw->Init(CreateSimpleServiceProvider(services_.get()).get()));
  ThrowIfFailed(client_->put_ServerName(FromUtf8(settings_.server)));
  ThrowIfFailed(client_->put_Proxy(FromUtf8(settings_.proxy)));
  model_ = ModelOf(client_.get());
}

WideString ScriptSession::ConnectionText() const {
  IConnectionString* given = nullptr;
  ThrowIfFailed(client_->ConnectionString(&given));
  const IConnectionStringPtr connection(given, false);
  const Guid& iid = IConnectionString::kIid;
  ThrowIfFailed(connection->put_UserName(FromUtf8(settings_.user)), connection.get(), iid);
  ThrowIfFailed(connection->put_UserPassword(FromUtf8(settings_.password)), connection.get(), iid);
  ThrowIfFailed(connection->put_ReplicaID(FromUtf8(settings_.replica)), connection.get(), iid);
  WideString text;
  ThrowIfFailed(connection->ToString(&text), connection.get(), iid);
  return text;
}

SimpleHostSession ScriptSession::Session() const {
  const ISimpleHostPtr host = As<ISimpleHost>(services_);
  SimpleHostSession session;
  host->GetSession(&session);
  return session;
}

// The library treats an answer without a session id as success; a script would fail with a misleading
// message.
void ScriptSession::CheckSessionId() const {
  if (!Session().open) throw Failure(ExitStatus::kAnswer, "the server opened a session without an id");
}

Failure ScriptSession::ExplainOpening(const _com_error& error) const {
  Failure failure = ExplainFailure(Phase::kOpen, error, http_.Note());
  const bool isRefused = failure.Status() == ExitStatus::kRefused;
  return isRefused && settings_.user.empty() ? failure.With(" (no --user given)") : failure;
}

void ScriptSession::Open() {
  http_.Forget();
  try {
    SetServer();
    if (!settings_.usid.empty()) return;
    ThrowIfFailed(model_->CreateUserSession(ConnectionText()), model_.get(), IConnectionModel::kIid);
    CheckSessionId();
  } catch (const _com_error& error) {
    ThrowIfInterrupted();
    throw ExplainOpening(error);
  }
}

Variant ScriptSession::Execute(const std::string& language, const std::string& script,
                               const std::vector<ScriptParameter>& parameters) {
  http_.Forget();
  try {
    const IParametersPtr list = MakeList(parameters);
    Variant answer;
    ThrowIfFailed(model_->Execute(FromUtf8(language), FromUtf8(script), list.get(), &answer), model_.get(),
                  IConnectionModel::kIid);
    return answer;
  } catch (const _com_error& error) {
    ThrowIfInterrupted();
    throw ExplainFailure(Phase::kExecute, error, http_.Note());
  }
}

Variant ScriptSession::ExecuteDocument(const std::string& url, const std::string& file,
                                       const std::vector<ScriptParameter>& parameters) {
  http_.Forget();
  try {
    const IParametersPtr list = MakeList(parameters);
    Variant answer;
    ThrowIfFailed(model_->ExecuteFile(FromUtf8(url), list.get(), &answer), model_.get(),
                  IConnectionModel::kIid);
    return answer;
  } catch (const _com_error& error) {
    ThrowIfInterrupted();  // a signal ends reads of the document, too
    throw ExplainDocumentFailure(file, error, http_.Note());
  }
}

std::string ScriptSession::Download(const std::string& url, const std::string& directory) {
  http_.Forget();
  try {
    WideString path;
    ThrowIfFailed(model_->DownloadFile(FromUtf8(url), FromUtf8(directory), &path), model_.get(),
                  IConnectionModel::kIid);
    return NativePath(path);
  } catch (const _com_error& error) {
    ThrowIfInterrupted();
    throw ExplainFailure(Phase::kDownload, error, http_.Note());
  }
}

void ScriptSession::Close() {
  if (settings_.usid.empty() && model_ != nullptr) CloseAdopted();
}

void ScriptSession::CloseAdopted() {
  http_.Forget();
  if (Interrupted() || budget_.IsBelow(kLastWait)) Hurry();
  try {
    ThrowIfFailed(model_->CloseUserSession(), model_.get(), IConnectionModel::kIid);
  } catch (const _com_error& error) {
    throw ExplainFailure(Phase::kClose, error, http_.Note());
  }
}

// A session is closed even if there is no time left.
void ScriptSession::Hurry() {
  HttpOptions hurried = settings_.http;
  hurried.connectTimeout = AtMost(hurried.connectTimeout, kLastWait);
  hurried.idleTimeout = AtMost(hurried.idleTimeout, kLastWait);
  SetThreadHttpOptions(hurried, nullptr);
  budget_ = TimeBudget(kLastWait);
}

}  // namespace qv::cli

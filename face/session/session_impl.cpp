#include "face/session/session_impl.h"

#include <cstring>
#include <utility>

#include "face/exchange/upload_scripts.h"
#include "face/session/address.h"
#include "face/session/checked_options.h"
#include "face/session/local_path.h"
#include "face/session/parameter_list.h"
#include "face/session/process_hold.h"
#include "face/session/session_secrets.h"
#include "face/table/strict_answer.h"
#include "face/table/table_access.h"
#include "face/tape/session_tape.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/native_path.h"

namespace scriptwells {

namespace {

void Wipe(std::string& secret) noexcept {
  explicit_bzero(secret.data(), secret.size());
  secret.clear();
}

void WipeAll(std::vector<std::string>& secrets) noexcept {
  for (std::string& secret : secrets) Wipe(secret);
}

// Holds the types of the process before the first object of a session is made.
const std::string& Held(const std::string& server) {
  HoldLibrary();
  return server;
}

std::int64_t Sooner(std::int64_t time, std::int64_t limit) noexcept {
  return time == 0 || time > limit ? limit : time;
}

[[noreturn]] void ThrowEnded(const char* when) {
  throw CancelledError(Phase::kCancelled, std::string("the session ended ") + when + " the call");
}

void CheckLimit(std::chrono::milliseconds limit) {
  if (limit.count() < 0) throw Error(Phase::kAddress, "the total timeout is negative");
}

}  // namespace

// A call that waits for the executor. It owns all that it needs.
class Session::Impl::PostedRun final : public QueuedCall {
 public:
  PostedRun(Impl& session, std::string script, Arguments arguments, RunOptions options)
      : session_(session),
        script_(std::move(script)),
        arguments_(std::move(arguments)),
        options_(std::move(options)) {}

  std::future<Value> Future() { return promise_.get_future(); }
  void Run() noexcept override {
    try {
      promise_.set_value(session_.RunNow(script_, arguments_, options_));
    } catch (...) {
      promise_.set_exception(std::current_exception());
    }
  }
  void Fail(std::exception_ptr reason) noexcept override { promise_.set_exception(std::move(reason)); }

 private:
  Impl& session_;
  std::string script_;
  Arguments arguments_;
  RunOptions options_;
  std::promise<Value> promise_;
};

Session::Impl::Impl(const std::string& server, const Credentials& credentials, Options options,
                    const std::string& id, std::unique_ptr<CallTape> tape)
    : server_(CheckedServer(server)),
      options_(std::move(options)),
      settings_(CheckedSettings(options_)),
      tape_(std::move(tape)),
      id_(id),
      client_(Held(server_), settings_.proxy, credentials, id),
      queue_(options_.executor) {
  settings_.hasUser = !credentials.user.empty();
  settings_.tickets = &tickets_;
  if (!credentials.password.empty()) settings_.secrets.push_back(credentials.password);
  if (options_.cancelQueued)
    settings_.progress = [listener = std::move(settings_.progress),
                          ending = ending_](const Progress& progress) {
      if (ending.IsCancelled()) ThrowEnded("during");
      if (listener) listener(progress);
    };
  UseTapes(credentials.password);
  if (id.empty()) {
    Open(credentials);
  } else {
    state_ = State::kAdopted;
  }
  settings_.secrets.push_back(id_);
}

Session::Impl::~Impl() {
  if (options_.cancelQueued) ending_.Cancel();
  queue_.WaitUntilIdle();
  if (state_ == State::kOpen && !isUnreachable_) CloseSilently();
  WipeAll(settings_.secrets);
  WipeAll(tickets_);
  Wipe(id_);
}

void Session::Impl::UseTapes(const std::string& password) {
  if (tape_ == nullptr && !(options_.record.empty() && options_.replay.empty())) {
    auto tape = std::make_unique<SessionTape>(options_.record, options_.replay);
    tape->Know(SecretKind::kPassword, password);
    tape->Know(SecretKind::kSession, id_);
    tape_ = std::move(tape);
  }
  settings_.tape = tape_.get();
}

template <class Call>
void Session::Impl::Observe(const CallSettings& settings, Purpose purpose, const std::string& document,
                            Call call) {
  ObservedCall observed(settings, purpose);
  try {
    call(observed);
  } catch (const qv::_com_error& error) {
    isUnreachable_ = observed.CouldNotConnect();
    observed.Explain(error, document);
  }
  isUnreachable_ = false;
  observed.Finish();
}

void Session::Impl::Open(const Credentials& credentials) {
  try {
    Observe(settings_, Purpose::kOpenSession, {}, [&](ObservedCall&) { client_.Open(credentials); });
  } catch (...) {
    // A listener may have thrown after the server opened the session.
    if (!client_.Id().empty()) CloseSilently();
    throw;
  }
  // The library takes an answer without an id for a success; a script would fail with a misleading message.
  id_ = client_.Id();
  if (id_.empty()) throw Error(Phase::kAnswer, "the server opened a session without an id");
  state_ = State::kOpen;
}

void Session::Impl::CheckUsable() const {
  if (ending_.IsCancelled()) ThrowEnded("before");
  if (state_ == State::kClosed) throw SessionError(Phase::kSession, "the session is closed");
}

Patience Session::Impl::PatienceOf(const RunOptions& options) const {
  return {options.cancel ? options.cancel : options_.cancel,
          options.totalTimeout.value_or(options_.totalTimeout)};
}

// Copying the settings would cost more than the rest of this room.
const CallSettings& Session::Impl::SettingsFor(const RunOptions& options, std::optional<CallSettings>& own) {
  settings_.keepAnswer = options.strict.value_or(options_.strict);
  if (!options.totalTimeout && !options.cancel && !options.progress) return settings_;
  own.emplace(settings_);
  if (options.totalTimeout) {
    CheckLimit(*options.totalTimeout);
    own->http.totalTimeout = options.totalTimeout->count();
  }
  if (options.cancel) own->cancel = options.cancel;
  if (options.progress) own->progress = options.progress;
  return *own;
}

template <class Execute>
Value Session::Impl::Answer(const Arguments& arguments, const RunOptions& options,
                            const std::string& document, Execute execute) {
  const bool strict = options.strict.value_or(options_.strict);
  settings_.files = CountFiles(arguments);
  std::optional<CallSettings> own;
  const CallSettings& settings = SettingsFor(options, own);
  Value value;
  Observe(settings, Purpose::kExecute, document, [&](ObservedCall& observed) {
    const qv::IParametersPtr list = MakeParameters(arguments, strict);
    if (settings.files > 0) CheckUploadScripts(settings.home);
    qv::Variant answer;
    qv::ThrowIfFailed(execute(list.get(), &answer));
    if (strict) CheckStrict(observed.AnswerText());
    value = AnswerOf(std::move(answer));
  });
  return value;
}

Value Session::Impl::RunNow(std::string_view script, const Arguments& arguments, const RunOptions& options) {
  CheckUsable();
  const std::string& language = options.language ? *options.language : options_.language;
  const bool strict = options.strict.value_or(options_.strict);
  CheckText(script, "script", strict);
  CheckText(language, "language", strict);
  return Answer(arguments, options, {}, [&](qv::IParameters* list, qv::Variant* answer) {
    return client_.Model().Execute(qv::FromUtf8(language), qv::FromUtf8(script), list, answer);
  });
}

Value Session::Impl::Run(std::string_view script, const Arguments& arguments, const RunOptions& options) {
  const CallQueue::Turn turn(queue_, PatienceOf(options));
  return RunNow(script, arguments, options);
}

Value Session::Impl::RunDocument(const std::filesystem::path& document, const Arguments& arguments,
                                 const RunOptions& options) {
  const CallQueue::Turn turn(queue_, PatienceOf(options));
  CheckUsable();
  const std::string url = DocumentUrl(document);
  return Answer(arguments, options, document.native(), [&](qv::IParameters* list, qv::Variant* answer) {
    return client_.Model().ExecuteFile(qv::FromUtf8(url), list, answer);
  });
}

std::filesystem::path Session::Impl::Download(const std::string& url, const std::filesystem::path& directory,
                                              const RunOptions& options) {
  const CallQueue::Turn turn(queue_, PatienceOf(options));
  CheckUsable();
  const std::string source = CheckedFileUrl(url);
  const std::string target = TargetDirectory(directory);
  qv::WideString path;
  std::optional<CallSettings> own;
  Observe(SettingsFor(options, own), Purpose::kDownload, {}, [&](ObservedCall&) {
    qv::ThrowIfFailed(client_.Model().DownloadFile(qv::FromUtf8(source), qv::FromUtf8(target), &path));
  });
  return qv::NativePath(path);
}

void Session::Impl::CloseSilently() noexcept {
  try {
    CloseNow(options_.closeTimeout);
  } catch (...) {  // nobody waits for it
  }
}

// A cancelled session is closed, too.
void Session::Impl::CloseNow(std::chrono::milliseconds within) {
  CallSettings settings = settings_;
  settings.cancel.reset();
  settings.progress = options_.progress;
  if (within.count() > 0) {
    const std::int64_t limit = within.count();
    settings.http.connectTimeout = Sooner(settings.http.connectTimeout, limit);
    settings.http.idleTimeout = Sooner(settings.http.idleTimeout, limit);
    settings.http.totalTimeout = limit;
  }
  Observe(settings, Purpose::kCloseSession, {}, [&](ObservedCall&) {
    qv::ThrowIfFailed(client_.Model().CloseUserSession());
    state_ = State::kClosed;
  });
}

void Session::Impl::Close(std::chrono::milliseconds within) {
  const CallQueue::Turn turn(queue_, {{}, within});
  if (state_ != State::kClosed) CloseNow(within);
}

std::string Session::Impl::Release() {
  const CallQueue::Turn turn(queue_);
  state_ = State::kClosed;
  return id_;
}

std::vector<std::string> Session::Impl::Secrets() const {
  std::vector<std::string> secrets = settings_.secrets;
  secrets.insert(secrets.end(), tickets_.begin(), tickets_.end());
  return secrets;
}

std::future<Value> Session::Impl::Post(std::string script, Arguments arguments, RunOptions options) {
  if (!queue_.HasExecutor())
    throw std::logic_error(
        "RunAsync needs an executor: Options::executor, such as scriptwells::ThreadPool(1)");
  const auto call =
      std::make_shared<PostedRun>(*this, std::move(script), std::move(arguments), std::move(options));
  std::future<Value> future = call->Future();
  queue_.Post(call);
  return future;
}

Session SessionAccess::Open(const std::string& server, std::unique_ptr<CallTape> tape,
                            const Options& options) {
  return Session(
      std::make_unique<Session::Impl>(server, Credentials(), options, std::string(), std::move(tape)));
}

Session SessionAccess::Adopt(const std::string& server, std::unique_ptr<CallTape> tape,
                             const Options& options) {
  constexpr char kId[] = "saved";
  return Session(std::make_unique<Session::Impl>(server, Credentials(), options, kId, std::move(tape)));
}

std::vector<std::string> SessionAccess::Secrets(const Session& session) {
  return session.impl_->Secrets();
}

std::vector<std::string> SecretsOf(const Session& session) {
  return SessionAccess::Secrets(session);
}

}  // namespace scriptwells

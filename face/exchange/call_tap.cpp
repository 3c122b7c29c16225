#include "face/exchange/call_tap.h"

#include <algorithm>
#include <utility>

#include "components/http/response_head.h"
#include "face/exchange/learned_secrets.h"
#include "face/exchange/thread_hooks.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/native_path.h"

namespace scriptwells {

namespace {

// Enough to see what kind of answer it is.
constexpr std::size_t kBodyStart = std::size_t{64} * 1024;

// Of a session. Each one that is looked for in all later exchanges costs time.
constexpr std::size_t kMostTickets = 16;
// A shorter one would be found everywhere in the exchanges of other calls.
constexpr std::size_t kShortestTicket = 4;

std::string ValueOf(const qv::ResponseHead& head, std::string_view name) {
  std::string_view value;
  return head.Find(name, &value) ? HeaderText(value) : std::string();
}

}  // namespace

CallTap::CallTap(const CallSettings& settings, Purpose purpose)
    : settings_(settings), purpose_(purpose), budget_(settings.http.totalTimeout) {}

void CallTap::RethrowFromListener() const {
  if (thrown_ != nullptr) std::rethrow_exception(thrown_);
}

bool CallTap::MayGoOn() const noexcept {
  return thrown_ == nullptr && !(settings_.cancel && settings_.cancel->IsCancelled());
}

// What the host throws ends the call. What it does on this thread meanwhile is no part of the call.
template <class Call>
void CallTap::CallHost(const Call& call) noexcept {
  const ThreadHooks none(nullptr, nullptr);
  try {
    call();
  } catch (...) {
    thrown_ = std::current_exception();
  }
}

// The tape's reason in place of what becomes of it below.
template <class Call>
auto CallTap::CallTapeOf(const Call& call) {
  try {
    return call();
  } catch (const TapedFailure& failure) {
    record_.inHandshake = failure.IsOfHandshake();
    throw;
  } catch (...) {
    thrown_ = std::current_exception();
    taped_.reset();
    throw;
  }
}

template <class Show>
void CallTap::ShowBoth(const Show& show) {
  if (shown_) show(*shown_);
  if (taped_) show(*taped_);
}

// Each file takes two exchanges before the one of the script.
Purpose CallTap::NextPurpose() noexcept {
  const std::size_t number = exchanges_++;
  if (purpose_ != Purpose::kExecute || number >= 2 * settings_.files) return purpose_;
  return number % 2 == 0 ? Purpose::kUploadAddress : Purpose::kUpload;
}

void CallTap::SetUp(qv::HttpOptions* options, qv::IHttpProgressPtr* progress) {
  *options = settings_.http;
  options->totalTimeout = budget_.Left();
  if (WantsProgress()) *progress = this;
}

bool CallTap::OnOpen(const qv::WideString& protocol, const qv::WideString& host, std::uint16_t port,
                     qv::WideString* proxy) {
  EndExchange();
  record_ = ExchangeRecord();
  shown_.reset();
  taped_.reset();
  fileBody_.clear();
  open_ = true;
  record_.purpose = NextPurpose();
  record_.protocol = protocol;
  record_.host = host;
  record_.port = port;
  // The library below may pass its name alone.
  if (!proxy->IsEmpty() && !settings_.proxy.empty()) *proxy = qv::FromUtf8(settings_.proxy);
  record_.proxy = *proxy;
  if (settings_.listener && thrown_ == nullptr) shown_.emplace(settings_.listenerBodies);
  if (settings_.tape != nullptr && thrown_ == nullptr) taped_.emplace(true);
  return MayGoOn();
}

std::unique_ptr<qv::WireLine> CallTap::NewLine() {
  if (settings_.tape == nullptr) return nullptr;
  return CallTapeOf([this] { return settings_.tape->Connect(); });
}

void CallTap::OnConnected(bool isKeptConnection) {
  record_.connected = true;
  ShowBoth([&](ShownExchange& shown) { shown.Connected(isKeptConnection); });
}

void CallTap::OnRequest(std::string_view head, std::string_view body) {
  if (settings_.tape != nullptr)
    CallTapeOf([&] { settings_.tape->Request({record_.purpose, head, body, {}}); });
  ShowBoth([&](ShownExchange& shown) { shown.Request(head, body); });
}

void CallTap::OnFileRequest(std::string_view head, const qv::WideString& path) {
  record_.purpose = Purpose::kUpload;
  record_.file = qv::NativePath(path);
  if (settings_.tape != nullptr)
    CallTapeOf([&] { settings_.tape->Request({record_.purpose, head, {}, record_.file}); });
  ShowBoth([&](ShownExchange& shown) { shown.Request(head, {}); });
}

void CallTap::OnAnswerBytes(std::string_view bytes) {
  if (bytes.empty()) return;
  record_.answering = true;
  ShowBoth([&](ShownExchange& shown) { shown.Answering(bytes); });
}

void CallTap::OnAnswer(const qv::ResponseHead& head) {
  record_.status = head.Status();
  record_.contentType = ValueOf(head, "Content-Type");
  if (purpose_ == Purpose::kDownload) record_.disposition = ValueOf(head, "Content-Disposition");
}

// Neither the body of an answer with an error status nor a name that is refused, both of which the library
// below would save.
bool CallTap::MaySave(const qv::WideString& path) {
  record_.file = qv::NativePath(path);
  record_.nameFault = FaultOfName(record_.file.substr(record_.file.rfind('/') + 1), settings_.hiddenFiles);
  return record_.Succeeded() && record_.nameFault == NameFault::kNone;
}

void CallTap::OnAnswerBody(std::string_view bytes) {
  if (!record_.file.empty()) {
    if (taped_) fileBody_ += bytes;
    return;
  }
  const std::size_t room = kBodyStart - std::min(kBodyStart, record_.body.size());
  record_.body.Append(KeepsBody() ? bytes : bytes.substr(0, room));
}

void CallTap::OnFailure(qv::HRESULT code) noexcept {
  const bool isRefused = !record_.file.empty() && record_.nameFault != NameFault::kNone;
  if (record_.failure || isRefused ||
      (purpose_ == Purpose::kDownload && record_.status != 0 && !record_.Succeeded()))
    return;
  record_.failure = code;
  qv::ErrorInfo info;
  if (!qv::GetErrorInfo(&info)) return;
  qv::SetErrorInfo(info);  // it stays for the library below
  try {
    record_.message = qv::ToUtf8(info.description);
  } catch (...) {  // the code remains
  }
}

void CallTap::EndExchange() {
  if (!std::exchange(open_, false)) return;
  NoteRefusedUpload();
  if (settings_.keepAnswer && record_.purpose == purpose_) answerText_ = record_.BodyText();
  if (taped_) TellTape();
  if (shown_) TellListener();
}

void CallTap::TellTape() {
  Exchange exchange = taped_->Ended(record_, nullptr);
  taped_.reset();
  if (!fileBody_.empty()) exchange.answerBody = std::move(fileBody_);
  fileBody_.clear();
  CallHost([&] { settings_.tape->Ended(record_, exchange); });
}

void CallTap::NoteRefusedUpload() {
  if (record_.purpose != Purpose::kUpload || record_.status == 0 || record_.Succeeded()) return;
  if (refusedUpload_.empty())
    refusedUpload_ = record_.Server() + " answered the upload of " + record_.file + " with the status " +
                     std::to_string(record_.status);
}

Masking& CallTap::Mask() {
  if (secrets_) return *secrets_;
  secrets_.emplace();
  for (const std::string& secret : settings_.secrets) secrets_->Add(secret);
  if (settings_.tickets != nullptr)
    for (const std::string& ticket : *settings_.tickets) secrets_->Add(ticket);
  return *secrets_;
}

// Of those of the session the oldest is forgotten.
void CallTap::LearnTicket(const std::string& ticket) {
  if (!settings_.showSecrets) Mask().Add(ticket);
  std::vector<std::string>* const known = settings_.tickets;
  if (known == nullptr || ticket.size() < kShortestTicket ||
      std::find(known->begin(), known->end(), ticket) != known->end())
    return;
  if (known->size() == kMostTickets) known->erase(known->begin());
  known->push_back(ticket);
}

void CallTap::LearnSecrets() {
  PlacedSecrets tickets;
  if (record_.purpose == Purpose::kUploadAddress) tickets = TicketsIn(record_.BodyText());
  if (record_.purpose == Purpose::kUpload) tickets = TicketsInHead(shown_->RequestHead());
  for (const PlacedSecret& ticket : tickets) LearnTicket(ticket.value);
  if (settings_.showSecrets || record_.purpose != Purpose::kOpenSession) return;
  for (const PlacedSecret& id : SessionIdsIn(record_.BodyText())) Mask().Add(id.value);
}

void CallTap::TellListener() {
  LearnSecrets();
  const Exchange exchange = shown_->Ended(record_, settings_.showSecrets ? nullptr : &Mask());
  shown_.reset();
  CallHost([&] { settings_.listener(exchange); });
}

qv::HRESULT CallTap::QueryInterface(const qv::Guid& iid, void** object) noexcept {
  if (object == nullptr) return qv::E_POINTER;
  *object = nullptr;
  if (iid != qv::IUnknown::kIid && iid != qv::IHttpProgress::kIid) return qv::E_NOINTERFACE;
  *object = static_cast<qv::IHttpProgress*>(this);
  return qv::S_OK;
}

qv::HRESULT CallTap::OnProgress(bool sending, std::int64_t done, std::int64_t total) noexcept {
  ShowBoth([&](ShownExchange& shown) { shown.Transferred(sending, done); });
  if (settings_.progress && MayGoOn())
    CallHost([&] { settings_.progress({sending, done, total, record_.file}); });
  return MayGoOn() ? qv::S_OK : qv::S_FALSE;
}

}  // namespace scriptwells

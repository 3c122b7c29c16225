#include "session/connection_model_impl.h"

#include <mutex>
#include <vector>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/secret_text.h"
#include "recordlist/register_formaters.h"
#include "script/file_downloader.h"
#include "soap/named_arguments.h"
#include "soap/soap_call.h"
#include "support/namespaces.h"
#include "support/string_helpers.h"
#include "support/tokenize_string.h"
#include "text/join_text.h"

namespace qv {
namespace {

constexpr std::u16string_view kServicePath = u"/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx";
constexpr std::u16string_view kUploadPath = u"/WebEditor/FileManagerUpload.aspx";
constexpr std::int32_t kDefaultProxyPort = 80;

void InsertText(NamedArguments& map, std::u16string_view key, const WideString& text) {
  map.emplace(key, Variant::FromString(text));
}

WideString ConnectionField(HRESULT (IConnectionString::*get)(WideString*) noexcept,
                           IConnectionString* object) {
  WideString value;
  ThrowIfFailed((object->*get)(&value), object, IConnectionString::kIid);
  return value;
}

}  // namespace

ConnectionModelImpl::~ConnectionModelImpl() {
  clientServices_.reset();
  cookieHandle_ = WideString();
  EndFormaters();
}

void ConnectionModelImpl::SetServer(WideString serverName, WideString proxy) {
  SetNamespace();
  SetHostUrl(JoinText({serverName.view(), kServicePath}));
  uploadUrl_ = JoinText({serverName.view(), kUploadPath});
  SetProxyText(proxy);
}

void ConnectionModelImpl::SetNamespace() {
  // std::call_once is unsuitable: an exception that passes through it ends the process if there is no memory
  // to load the unwinder.
  static std::mutex mutex;
  static bool registered = false;
  namespace_ = kServiceNamespace;
  const std::lock_guard<std::mutex> lock(mutex);
  if (registered) return;
  FillFormaters();
  registered = true;
}

void ConnectionModelImpl::SetHostUrl(const WideString& text) {
  if (text.IsEmpty()) throw EQvException(u"No available host adress");
  hostUrl_ = text;
  serviceUrl_.SetUrl(text);
}

void ConnectionModelImpl::SetProxyText(const WideString& proxy) {
  std::vector<WideString> pieces;
  const bool hasPort = TokenizeString(proxy.view(), u":", pieces) != 0;
  proxy_ = hasPort ? pieces[0] : proxy;
  proxyPort_ = hasPort ? ToInt(pieces[1]) : kDefaultProxyPort;
}

void ConnectionModelImpl::SetClientServices(IUnknown* services) {
  clientServices_ = As<IQvClientServices>(services);
}

void ConnectionModelImpl::SetUSID(WideString usid) {
  MarkSecret(usid);
  contextHandle_ = usid;
  state_ = SessionState::kOpen;
}

void ConnectionModelImpl::AddProxyArguments(NamedArguments& map) const {
  if (proxy_.IsEmpty()) return;
  InsertText(map, argument::kProxy, proxy_);
  map.emplace(argument::kProxyPort, Variant::FromInt(proxyPort_));
}

Variant ConnectionModelImpl::RunCommand(const WideString& action, const NamedArguments& map) {
  CSOAPCall call;
  const CSOAPResponse response = call.Run(serviceUrl_, action, namespace_, map);
  cookieHandle_ = response.Cookie();
  return response.Value();
}

void ConnectionModelImpl::CreateUserSession(WideString connectionString) {
  MarkSecret(connectionString);
  NamedArguments map;
  InsertText(map, argument::kConnectionString, connectionString);
  AddProxyArguments(map);
  const Variant value = RunCommand(u"CreateUserSession", map);
  if (value.Tag() == VT_BSTR) {
    contextHandle_ = value.Text();
    PublishSessionInfo(connectionString);
  }
  state_ = SessionState::kOpen;
}

void ConnectionModelImpl::PublishSessionInfo(const WideString& connectionString) {
  const IConnectionStringPtr fields = CreateConnectionString();
  const IConnectionStringRawPtr raw = As<IConnectionStringRaw>(fields);
  ThrowIfFailed(raw->Initialize(connectionString), raw.get(), IConnectionStringRaw::kIid);

  const IQvClientServicesSinkPtr sink = Sink();
  const auto check = [&sink](HRESULT code) { ThrowIfFailed(code, sink.get(), IQvClientServicesSink::kIid); };
  const WideString usid = contextHandle_;  // a host may change the member during the notification
  check(sink->SetUsid(usid));
  check(sink->SetUserName(ConnectionField(&IConnectionString::get_UserName, fields.get())));
  check(sink->SetDatabaseIds(ConnectionField(&IConnectionString::get_DatabaseID, fields.get()),
                             ConnectionField(&IConnectionString::get_ReplicaID, fields.get())));
}

void ConnectionModelImpl::CloseUserSession() {
  if (contextHandle_.IsEmpty()) return;
  NamedArguments map;
  InsertText(map, argument::kContextHandle, contextHandle_);
  InsertText(map, argument::kCookieHandle, cookieHandle_);
  AddProxyArguments(map);
  RunCommand(u"CloseUserSession", map);
  ResetSession(map);
}

void ConnectionModelImpl::ResetSession(NamedArguments& map) {
  map.clear();
  state_ = SessionState::kClosed;
  contextHandle_ = u"";
  cookieHandle_ = u"";
  const IQvClientServicesSinkPtr sink = Sink();
  ThrowIfFailed(sink->ClearSession(), sink.get(), IQvClientServicesSink::kIid);
}

IQvClientServicesSinkPtr ConnectionModelImpl::Sink() const {
  const IQvClientServicesPtr asked = clientServices_;  // the services may remove themselves meanwhile
  IQvClientServicesSinkPtr sink = As<IQvClientServicesSink>(asked);
  if (sink == nullptr) _com_raise_error(E_POINTER);
  return sink;
}

void ConnectionModelImpl::RequireSession() const {
  if (contextHandle_.IsEmpty()) throw EQvException(u"Session does not exist.");
}

Variant ConnectionModelImpl::Execute(WideString scriptLanguage, WideString script, IParameters* parameters) {
  RequireSession();
  NamedArguments map;
  InsertText(map, argument::kContextHandle, contextHandle_);
  InsertText(map, argument::kScriptLanguage, scriptLanguage);
  InsertText(map, argument::kScript, script);
  InsertText(map, argument::kUploadFile, uploadUrl_);
  InsertText(map, argument::kCookieHandle, cookieHandle_);
  return RunScript(map, parameters);
}

Variant ConnectionModelImpl::ExecuteFile(WideString scriptFile, IParameters* parameters) {
  RequireSession();
  NamedArguments map;
  InsertText(map, argument::kContextHandle, contextHandle_);
  InsertText(map, argument::kCookieHandle, cookieHandle_);
  InsertText(map, argument::kScriptFile, scriptFile);
  InsertText(map, argument::kUploadFile, uploadUrl_);
  return RunScript(map, parameters);
}

Variant ConnectionModelImpl::RunScript(NamedArguments& map, IParameters* parameters) {
  AddProxyArguments(map);
  if (parameters != nullptr) map.emplace(argument::kParameters, Variant::FromObject(parameters));
  Variant result = RunCommand(u"Execute", map);
  state_ = SessionState::kScriptRan;
  return result;
}

WideString ConnectionModelImpl::DownloadFile(WideString url, WideString target) {
  CFileDownloader downloader(url, proxy_, proxyPort_, cookieHandle_);
  return downloader.Download(contextHandle_, target);
}

}  // namespace qv

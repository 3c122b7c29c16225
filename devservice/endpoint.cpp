#include "devservice/endpoint.h"

#include <exception>

#include "devservice/files/script_files.h"
#include "devservice/soap/script_document.h"
#include "devservice/soap/soap_answer.h"
#include "devservice/soap/well_formed.h"
#include "devservice/soap/wsdl.h"
#include "devservice/values/fault_codes.h"
#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kServicePath = "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx";
constexpr std::size_t kMostRefusingPaths = 1000;

constexpr char kWelcome[] =
    "Scriptwells development service " DEVSERVICE_VERSION
    "\n\n"
    "Runs JavaScript over SOAP 1.1 at /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx\n"
    "Its WSDL: the same with ?wsdl\n"
    "Counts: /stats\n"
    "Odd answers: /odd/NAME[+NAME...] in front of the service path, with the names\n";

HttpAnswer UnknownForm() {
  return PlainAnswer(404, "There is no odd answer of this name. Names: " + OddFormNames() + "\n");
}

bool IsXmlType(std::string_view contentType) {
  const std::string_view type = contentType.substr(0, contentType.find_first_of("; "));
  return type == "text/xml" || type == "application/xml";
}

// Codes up to here mean that the sender has to change the request.
bool IsClientsFault(int code) {
  return code >= kBadRequest && code <= kUnsupportedType;
}

void ExpectWellFormed(std::string_view xml, const char* encoding, int code, const std::string& what) {
  const std::string fault = FaultInXml(xml, encoding);
  if (!fault.empty()) throw FaultError(code, what + " is not well-formed XML: " + fault + ".", "request");
}

}  // namespace

Endpoint::Endpoint(const Namespaces& spaces, const EndpointParts& parts, AccessRule access,
                   std::uint64_t maxUploadBytes)
    : spaces_(spaces),
      access_(std::move(access)),
      sessions_(parts.sessions),
      pool_(parts.pool),
      spool_(parts.spool),
      stats_(parts.stats),
      odds_(parts.odds),
      transfers_(parts.sessions, parts.spool, parts.stats, maxUploadBytes) {}

std::optional<HttpAnswer> Endpoint::Refuse(const HttpRequest& head) {
  const std::string reason = access_.Refusal(head.hostHeader, head.origin);
  if (!reason.empty()) return PlainAnswer(403, reason);
  if (head.method == "GET" || head.method == "HEAD" || head.method == "POST") return std::nullopt;
  return PlainAnswer(405, "The service takes GET, HEAD and POST only.\n");
}

BodyPlan Endpoint::PlanBody(const HttpRequest& head) {
  if (!IsUploadPath(head.path)) return {};
  std::string unknown;
  OddForms forms = ReadOddForms(head.path, unknown);
  if (!unknown.empty()) return {UnknownForm(), nullptr};
  odds_.Meet(OddUse::kFiles, "", forms);
  return transfers_.PlanUpload(head, forms.transfer);
}

HttpAnswer Endpoint::Handle(const HttpRequest& request) {
  if (EndsWith(request.path, kServicePath)) return HandleService(request);
  if (IsUploadPath(request.path)) return PlainAnswer(405, "Uploads are sent with POST.\n");
  if (const std::optional<std::string> id = PublishedIdIn(request.path)) return HandleFile(request, *id);
  return HandlePage(request);
}

HttpAnswer Endpoint::DescribeService(const HttpRequest& request) const {
  std::string unknown;
  ReadOddForms(request.path, unknown);
  if (!unknown.empty()) return UnknownForm();
  if (!request.asksForWsdl)
    return PlainAnswer(405, "The service takes POST only; ?wsdl behind the path describes it.\n");
  HttpAnswer answer = PlainAnswer(200, WriteWsdl(spaces_, UrlOfRequest(request)));
  answer.contentType = "text/xml; charset=utf-8";
  return answer;
}

HttpAnswer Endpoint::HandleService(const HttpRequest& request) {
  if (request.method != "POST") return DescribeService(request);
  if (!IsXmlType(request.contentType)) return PlainAnswer(415, "The service takes text/xml only.\n");
  std::string unknown;
  OddForms forms = ReadOddForms(request.path, unknown);
  if (!unknown.empty()) return UnknownForm();
  odds_.Meet(OddUse::kCalls, ActionIn(request.soapAction), forms);
  if (forms.refusals != 0 && RefusesStill(request.path, forms.refusals)) {
    ++stats_.refused;
    HttpAnswer none;
    none.delivery = Delivery::kDrop;
    return none;
  }
  return HandleSoap(request, forms);
}

HttpAnswer Endpoint::HandleFile(const HttpRequest& request, const std::string& id) {
  if (request.method == "POST") return PlainAnswer(405, "Files are fetched with GET.\n");
  std::string unknown;
  OddForms forms = ReadOddForms(request.path, unknown);
  if (!unknown.empty()) return UnknownForm();
  odds_.Meet(OddUse::kFiles, "", forms);
  return transfers_.Download(request, id, forms.transfer);
}

HttpAnswer Endpoint::HandlePage(const HttpRequest& request) const {
  if (request.method != "GET" && request.method != "HEAD")
    return PlainAnswer(404, "There is nothing here.\n");
  if (request.path == "/") return PlainAnswer(200, kWelcome + OddFormNames() + "\n");
  if (request.path != "/stats") return PlainAnswer(404, "There is nothing here.\n");
  HttpAnswer answer = PlainAnswer(200, StatsText(stats_, sessions_.Count()));
  answer.contentType = "application/json";
  return answer;
}

HttpAnswer Endpoint::HandleSoap(const HttpRequest& request, const OddForms& forms) {
  try {
    return Perform(request, forms);
  } catch (const FaultError& error) {
    return Fault({error.Code(), error.what(), error.Source(), IsClientsFault(error.Code())}, forms);
  } catch (const std::exception& error) {
    return Fault({kUnavailable, std::string("The service failed: ") + error.what(), "service", false}, forms);
  }
}

HttpAnswer Endpoint::Perform(const HttpRequest& http, const OddForms& forms) {
  if (forms.strictXml) ExpectWellFormed(http.body, nullptr, kBadRequest, "The request");
  const SoapRequest request = ParseSoapRequest(http.body, http.soapAction, spaces_);
  ++*CounterOf(stats_, ActionName(request.action));
  const ScriptResult result = Carry(request, MakeTransferUrls(http, kServicePath, forms.transfer), forms);
  if (result.kind == ResultKind::kFault)
    return Fault({result.code, result.text, result.source, false}, forms);
  return WriteAnswer(request.action, result, spaces_, forms);
}

ScriptResult Endpoint::Carry(const SoapRequest& request, const TransferUrls& urls, const OddForms& forms) {
  switch (request.action) {
    case Action::kCreateUserSession:
      return {ResultKind::kValue, "string", sessions_.Open(request.connectionString), 0, ""};
    case Action::kCloseUserSession:
      sessions_.Close(request.sessionId);
      return {};
    case Action::kExecute:
      break;
  }
  return RunScript(request, urls, forms);
}

ScriptResult Endpoint::RunScript(const SoapRequest& request, const TransferUrls& urls,
                                 const OddForms& forms) {
  ScriptFiles files(sessions_.Use(request.sessionId), spool_);
  // The document as it arrived: a real server does not know renderings.
  if (forms.strictXml)
    ExpectWellFormed(request.scriptDocument, "UTF-8", kBadScriptDocument, "The script document");
  ScriptJob job{ReadScriptDocument(request.scriptDocument, spaces_), request.parameters};
  job.session = request.sessionId;
  files.Prepare(job, urls);
  ScriptResult result = pool_.Run(job);
  if (result.kind != ResultKind::kFault) files.Keep(result.files);
  return result;
}

HttpAnswer Endpoint::Fault(const FaultContent& fault, const OddForms& forms) {
  ++stats_.faults;
  return WriteFault(fault, forms);
}

bool Endpoint::RefusesStill(const std::string& path, int times) {
  if (times == OddForms::kAlways) return true;
  const std::lock_guard<std::mutex> lock(mutex_);
  if (refusals_.size() >= kMostRefusingPaths) refusals_.clear();
  int& refused = refusals_[path];
  if (refused >= times) return false;
  ++refused;
  return true;
}

}  // namespace qv::devservice

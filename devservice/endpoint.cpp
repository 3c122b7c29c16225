#include "devservice/endpoint.h"

#include <exception>
#include <nlohmann/json.hpp>

#include "devservice/fault_codes.h"
#include "devservice/script_document.h"
#include "devservice/soap_answer.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kServicePath = "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx";
constexpr std::string_view kOddPrefix = "/odd/";
constexpr int kRefusals = 2;
constexpr std::size_t kMostRefusingPaths = 1000;

constexpr char kWelcome[] =
    "Scriptwells development service " DEVSERVICE_VERSION
    "\n\n"
    "Runs JavaScript over SOAP 1.1 at /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx\n"
    "Counts: /stats\n"
    "Odd answers: /odd/NAME[+NAME...] in front of the service path, with the names\n";

HttpAnswer Page(int status, const std::string& text) {
  HttpAnswer answer;
  answer.status = status;
  answer.body = text;
  return answer;
}

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// The odd forms that a path asks for, which is empty or a name that does not exist in `unknown`.
OddForms ReadOddForms(std::string_view path, std::string& unknown) {
  OddForms forms;
  if (path.substr(0, kOddPrefix.size()) != kOddPrefix) return forms;
  std::string_view names = path.substr(kOddPrefix.size());
  names = names.substr(0, names.find('/'));
  while (!names.empty()) {
    const std::size_t end = names.find('+');
    const std::string_view name = names.substr(0, end);
    if (!AddOddForm(name, forms)) unknown = name;
    names = end == std::string_view::npos ? std::string_view{} : names.substr(end + 1);
  }
  return forms;
}

bool IsXmlType(std::string_view contentType) {
  const std::string_view type = contentType.substr(0, contentType.find_first_of("; "));
  return type == "text/xml" || type == "application/xml";
}

// Codes up to here mean that the sender has to change the request.
bool IsClientsFault(int code) {
  return code >= kBadRequest && code <= kUnsupportedType;
}

std::atomic<std::uint64_t> ServiceStats::*CounterOf(Action action) {
  switch (action) {
    case Action::kCreateUserSession:
      return &ServiceStats::createUserSession;
    case Action::kCloseUserSession:
      return &ServiceStats::closeUserSession;
    case Action::kExecute:
      break;
  }
  return &ServiceStats::execute;
}

}  // namespace

HttpAnswer Endpoint::Handle(const HttpRequest& request) {
  if (!EndsWith(request.path, kServicePath)) return HandlePage(request);
  if (request.method != "POST") return Page(405, "The service takes POST only.\n");
  if (!IsXmlType(request.contentType)) return Page(415, "The service takes text/xml only.\n");
  std::string unknown;
  const OddForms forms = ReadOddForms(request.path, unknown);
  if (!unknown.empty())
    return Page(404, "There is no odd answer of this name. Names: " + OddFormNames() + "\n");
  if (forms.refuseTwice && RefusesStill(request.path)) {
    ++stats_.refused;
    HttpAnswer none;
    none.delivery = Delivery::kDrop;
    return none;
  }
  return HandleSoap(request, forms);
}

HttpAnswer Endpoint::HandlePage(const HttpRequest& request) const {
  if (request.method != "GET" && request.method != "HEAD") return Page(404, "There is nothing here.\n");
  if (request.path == "/") return Page(200, kWelcome + OddFormNames() + "\n");
  if (request.path != "/stats") return Page(404, "There is nothing here.\n");
  HttpAnswer answer = Page(200, StatsText());
  answer.contentType = "application/json";
  return answer;
}

HttpAnswer Endpoint::HandleSoap(const HttpRequest& request, const OddForms& forms) {
  try {
    return Perform(ParseSoapRequest(request.body, request.soapAction, spaces_), forms);
  } catch (const FaultError& error) {
    return Fault({error.Code(), error.what(), error.Source(), IsClientsFault(error.Code())}, forms);
  } catch (const std::exception& error) {
    return Fault({kUnavailable, std::string("The service failed: ") + error.what(), "service", false}, forms);
  }
}

HttpAnswer Endpoint::Perform(const SoapRequest& request, const OddForms& forms) {
  ++(stats_.*CounterOf(request.action));
  const ScriptResult result = Carry(request);
  if (result.kind == ResultKind::kFault)
    return Fault({result.code, result.text, result.source, false}, forms);
  return WriteAnswer(request.action, result, spaces_, forms);
}

ScriptResult Endpoint::Carry(const SoapRequest& request) {
  switch (request.action) {
    case Action::kCreateUserSession:
      return {ResultKind::kValue, "string", sessions_.Open(request.connectionString), 0, ""};
    case Action::kCloseUserSession:
      sessions_.Close(request.sessionId);
      return {};
    case Action::kExecute:
      break;
  }
  return RunScript(request);
}

ScriptResult Endpoint::RunScript(const SoapRequest& request) {
  sessions_.Use(request.sessionId);
  return pool_.Run({ReadScriptDocument(request.scriptDocument, spaces_), request.parameters});
}

HttpAnswer Endpoint::Fault(const FaultContent& fault, const OddForms& forms) {
  ++stats_.faults;
  return WriteFault(fault, forms);
}

bool Endpoint::RefusesStill(const std::string& path) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (refusals_.size() >= kMostRefusingPaths) refusals_.clear();
  return ++refusals_[path] <= kRefusals;
}

std::string Endpoint::StatsText() const {
  const nlohmann::json stats = {
      {"connections", stats_.connections.load()},
      {"requests", stats_.requests.load()},
      {"refused", stats_.refused.load()},
      {"actions",
       {{"CreateUserSession", stats_.createUserSession.load()},
        {"CloseUserSession", stats_.closeUserSession.load()},
        {"Execute", stats_.execute.load()}}},
      {"faults", stats_.faults.load()},
      {"openSessions", sessions_.Count()},
      {"scriptsRun", stats_.scriptsRun.load()},
      {"workersStarted", stats_.workersStarted.load()},
      {"workersKilled", stats_.workersKilled.load()},
      {"workersCrashed", stats_.workersCrashed.load()},
  };
  return stats.dump(2) + "\n";
}

}  // namespace qv::devservice

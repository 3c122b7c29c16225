#include "tools/page/page.h"

#include <charconv>
#include <nlohmann/json.hpp>
#include <utility>

#include "devservice/control/mask.h"
#include "devservice/values/text_scanner.h"
#include "scriptwells/session.h"
#include "tools/input/parameter_text.h"
#include "tools/page/copy_texts.h"
#include "tools/page/page_error.h"
#include "tools/page/query_value.h"
#include "tools/page/static_files.h"
#include "tools/report/failure.h"
#include "tools/report/json_text.h"

namespace qv::cli {

namespace {

using devservice::EndsWith;
using devservice::HttpAnswer;
using devservice::HttpRequest;
using devservice::StartsWith;

constexpr std::string_view kRoot = "/page/";
constexpr std::string_view kInterface = "api/";
constexpr std::string_view kUploads = "/page/api/files";

// Of every answer: nothing comes from elsewhere, nobody else shows or keeps the page.
constexpr char kHeaders[] =
    "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; "
    "connect-src 'self'; font-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'\r\n"
    "Referrer-Policy: no-referrer\r\n"
    "X-Content-Type-Options: nosniff\r\n"
    "Cross-Origin-Resource-Policy: same-origin\r\n"
    "Cross-Origin-Opener-Policy: same-origin\r\n";

std::string_view PathIn(const HttpRequest& request) {
  return std::string_view(request.path).substr(kRoot.size());
}

bool IsJson(const std::string& contentType) {
  return contentType.substr(0, contentType.find(';')) == "application/json";
}

std::optional<int> NumberIn(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// Of the path "sessions/3" for the name "sessions/"; 0 for a path that is the name. Nothing for any other
// path.
std::optional<int> NumberFor(std::string_view name, std::string_view path) {
  if (EndsWith(name, "/") && StartsWith(path, name)) return NumberIn(path.substr(name.size()));
  return path == name ? std::optional<int>(0) : std::nullopt;
}

std::string PortOf(const std::string& url) {
  return url.substr(url.rfind(':') + 1);
}

HttpAnswer NoContent() {
  return devservice::PlainAnswer(204, "");
}

// Pages of the control interface say in plain text what is wrong.
HttpAnswer WithJsonError(HttpAnswer answer) {
  if (answer.status < 400) return answer;
  std::string message = answer.body;
  while (!message.empty() && message.back() == '\n') message.pop_back();
  return ErrorAnswer(answer.status, message);
}

}  // namespace

// A request of the interface, below "/page/api/".
struct Page::Call {
  const HttpRequest& request;
  devservice::ServiceView& service;
  std::string name;
  int number = 0;
};

struct Page::Route {
  const char* method;
  const char* name;  // with "/" at its end a number follows
  HttpAnswer (Page::*answer)(const Call&);
};

const Page::Route Page::kRoutes[] = {
    {"GET", "state", &Page::State},
    {"POST", "sessions", &Page::OpenSession},
    {"DELETE", "sessions/", &Page::CloseSession},
    {"POST", "run", &Page::Run},
    {"POST", "cancel", &Page::Cancel},
    {"GET", "files", &Page::ListFiles},
    {"GET", "files/", &Page::SendFile},
    {"DELETE", "files/", &Page::RemoveFile},
    {"POST", "copy", &Page::Copy},
    {"GET", "counts", &Page::FromControl},
    {"GET", "requests", &Page::FromControl},
    {"GET", "events", &Page::FromControl},
    {"POST", "faults", &Page::FromControl},
    {"GET", "odd", &Page::FromControl},
    {"POST", "odd", &Page::FromControl},
};

Page::Page() : sessions_(console_, files_) {
  CheckPageLibraries();
}

devservice::ConsoleSink Page::Console() {
  return [this](const devservice::ConsoleMessage& message) { console_.Take(message); };
}

std::string Page::Begin(const PagePlace& place) {
  place_ = place;
  entry_.SetPort(PortOf(place.url));
  sessions_.Begin(place);
  begun_ = true;
  return place.url + std::string(kRoot) + "#" + entry_.Token();
}

// Another site cannot send the cookie, nor read what is answered; a page of another port of this machine
// could send it. So whatever changes something has to come from the page itself.
void Page::CheckAccess(const HttpRequest& request) const {
  if (!begun_) throw PageError(503, "The service is starting.");
  const bool isOwn = request.fetchSite.empty() || request.fetchSite == "same-origin" ||
                     (request.fetchSite == "none" && request.method == "GET");
  if (!isOwn) throw PageError(403, "Other pages may not use this one.");
  if (request.method != "GET" && request.method != "HEAD" && request.origin.empty())
    throw PageError(403, "The request does not name its origin.");
  if (request.path != "/page/enter" && !entry_.Holds(request.cookie))
    throw PageError(401, "Open the address that the program has printed.");
}

devservice::BodyPlan Page::PlanBody(const HttpRequest& head) {
  try {
    CheckAccess(head);
    if (head.path != kUploads) {
      if (!IsJson(head.contentType)) throw PageError(415, "The body is not JSON.");
      return {};
    }
    if (!head.bodyLength) throw PageError(411, "A file needs a Content-Length.");
    if (*head.bodyLength > SharedFiles::kMostBytes) throw PageError(413, "The file is too large.");
    return {std::nullopt, files_.Receive(QueryValue(head.target, "name"))};
  } catch (const PageError& error) {
    return {ErrorAnswer(error.Status(), error.what()), nullptr};
  }
}

HttpAnswer Page::Handle(const HttpRequest& request, devservice::ServiceView& service) {
  HttpAnswer answer;
  try {
    answer = Answer(request, service);
  } catch (const PageError& error) {
    answer = ErrorAnswer(error.Status(), error.what());
  } catch (const Failure& failure) {
    answer = ErrorAnswer(400, failure.Message());
  } catch (const std::exception& error) {
    answer = ErrorAnswer(500, error.what());
  }
  answer.headers += kHeaders;
  if (answer.headers.find("Cache-Control:") == std::string::npos)
    answer.headers += "Cache-Control: no-store\r\n";
  return answer;
}

HttpAnswer Page::Answer(const HttpRequest& request, devservice::ServiceView& service) {
  const std::string_view path = PathIn(request);
  if (StartsWith(path, kInterface)) {
    CheckAccess(request);
    return Dispatch(request, service);
  }
  if (path == "enter" && request.method == "POST") return Enter(request);
  if (request.method != "GET" && request.method != "HEAD")
    throw PageError(405, "Files of the page take GET only.");
  std::optional<HttpAnswer> file = StaticFile(path);
  if (!file) throw PageError(404, "There is no such file.");
  return *file;
}

HttpAnswer Page::Enter(const HttpRequest& request) {
  CheckAccess(request);
  const std::optional<std::string> header = entry_.Exchange(TextIn(request.body, "token"), request.cookie);
  if (!header) throw PageError(403, "This address was used before, or is not complete.");
  HttpAnswer answer = NoContent();
  answer.headers = *header;
  return answer;
}

HttpAnswer Page::Dispatch(const HttpRequest& request, devservice::ServiceView& service) {
  const std::string_view path = PathIn(request).substr(kInterface.size());
  bool isKnown = false;
  for (const Route& route : kRoutes) {
    const std::optional<int> number = NumberFor(route.name, path);
    if (!number) continue;
    isKnown = true;
    if (request.method == route.method)
      return (this->*route.answer)({request, service, std::string(path), *number});
  }
  if (isKnown) throw PageError(405, "This part of the page has no such method.");
  throw PageError(404, "The page has no such part.");
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): one of the routes
HttpAnswer Page::FromControl(const Call& call) {
  return WithJsonError(call.service.AskControl(call.name, call.request));
}

HttpAnswer Page::State(const Call&) {
  nlohmann::ordered_json state = {{"version", scriptwells::Version()},
                                  {"url", place_.url},
                                  {"needsPassword", place_.needsPassword},
                                  {"types", ParameterTypes()},
                                  {"languages", {"JavaScript"}}};
  std::string text = JsonText(state);
  text.pop_back();
  return JsonAnswer(text + R"(,"script":)" + ScriptJson(script_) + R"(,"sessions":)" + sessions_.AllJson() +
                    R"(,"files":)" + FilesJson() + "}");
}

HttpAnswer Page::OpenSession(const Call& call) {
  return JsonAnswer(sessions_.Open(TextIn(call.request.body, "user"), TextIn(call.request.body, "password")));
}

HttpAnswer Page::CloseSession(const Call& call) {
  sessions_.Close(call.number);
  return NoContent();
}

// A script can answer with ids that it was given.
HttpAnswer Page::Run(const Call& call) {
  const CallOutcome outcome = sessions_.Run(ParseCallRequest(call.request.body));
  return JsonAnswer(devservice::MaskIds(OutcomeJson(outcome),
                                        [&call](const std::string& id) { return call.service.KnowsId(id); }));
}

HttpAnswer Page::Cancel(const Call& call) {
  sessions_.Cancel(TextIn(call.request.body, "run"));
  return JsonAnswer("{}");
}

std::string Page::FilesJson() const {
  std::string files;
  for (const SharedFile& file : files_.All()) files += (files.empty() ? "" : ",") + FileJson(file);
  return "[" + files + "]";
}

HttpAnswer Page::ListFiles(const Call&) {
  return JsonAnswer(FilesJson());
}

HttpAnswer Page::SendFile(const Call& call) {
  return FileAnswer(sessions_.Fetch(call.number));
}

HttpAnswer Page::RemoveFile(const Call& call) {
  files_.Remove(call.number);
  return NoContent();
}

HttpAnswer Page::Copy(const Call& call) {
  const CallRequest request = ParseCallRequest(call.request.body);
  CopyPlace place;
  place.server = place_.url;
  place.isOwnService = place_.ownUser.has_value();
  place.needsPassword = place_.needsPassword || place.isOwnService;
  place.user = place.isOwnService
                   ? "USER"
                   : sessions_.UserOf(request.session).value_or(place_.needsPassword ? "USER" : "page");
  place.registry = place_.registry;
  place.home = place_.home;
  for (const SharedFile& file : files_.All()) place.fileNames[file.id] = file.name;
  const CopyTexts texts = MakeCopyTexts(request.script, place);
  return JsonAnswer(JsonText(
      {{"command", texts.command}, {"cpp", texts.cpp}, {"python", texts.python}, {"curl", texts.curl}}));
}

}  // namespace qv::cli

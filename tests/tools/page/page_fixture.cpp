#include "tests/tools/page/page_fixture.h"

#include "tools/service/local_service.h"

namespace qv::cli::testing {

using devservice::testing::HeaderOf;
using devservice::testing::RawAnswer;
using devservice::testing::RawClient;

void PageTest::TearDown() {
  StopService();
}

void PageTest::Start(std::vector<devservice::ServiceUser> users,
                     const std::function<void(devservice::ServiceOptions&, PagePlace&)>& change) {
  home_ = std::make_unique<PrivateHome>();
  page_ = std::make_unique<Page>();
  PagePlace place;
  place.needsPassword = !users.empty();
  place.home = home_->Path();
  devservice::ServiceOptions options;
  options.namespaceHost = QV_NAMESPACE_HOST;
  options.workerCommand = {SCRIPT_WORKER_PATH};
  options.users = std::move(users);
  options.page = page_.get();
  options.console = page_->Console();
  if (change) change(options, place);
  service_ = std::make_unique<devservice::Service>(options);
  service_->Start();
  place.url = service_->Url();
  address_ = page_->Begin(place);
}

void PageTest::StopService() {
  if (!service_) return;
  page_->Stop();
  service_.reset();
  page_.reset();
  home_.reset();
}

std::string PageTest::Bytes(const std::string& method, const std::string& path, const std::string& body,
                            const std::string& headers) const {
  std::string bytes = method + " /page/" + path + " HTTP/1.1\r\nHost: " + Host() + "\r\n" + headers;
  if (method == "POST") bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n";
  return bytes + "Connection: close\r\n\r\n" + body;
}

PageAnswer PageTest::AskPlainly(const std::string& method, const std::string& path, const std::string& body,
                                const std::string& headers) {
  if (!service_) Start();
  const RawAnswer raw = RawClient(service_->Port(), Bytes(method, path, body, headers)).Receive();
  EXPECT_EQ(raw.head.compare(0, 9, "HTTP/1.1 "), 0) << raw.head;
  all_ += raw.head + raw.body;
  return {raw.head.size() > 12 ? std::stoi(raw.head.substr(9, 3)) : 0, raw.head, raw.body};
}

void PageTest::Enter() {
  if (!service_) Start();
  if (!cookie_.empty()) return;
  const PageAnswer entered =
      AskPlainly("POST", "enter", Json({{"token", Token()}}).dump(),
                 "Origin: http://" + Host() + "\r\nContent-Type: application/json\r\n");
  EXPECT_EQ(entered.status, 204) << entered.body;
  const std::string header = HeaderOf(entered.head, "Set-Cookie");
  cookie_ = header.substr(0, header.find(';'));
}

PageAnswer PageTest::Ask(const std::string& method, const std::string& path, const std::string& body,
                         const std::string& headers) {
  Enter();
  std::string all = "Cookie: other=1; " + cookie_ + "\r\nOrigin: http://" + Host() + "\r\n" + headers;
  if (method == "POST" && headers.find("Content-Type:") == std::string::npos)
    all += "Content-Type: application/json\r\n";
  return AskPlainly(method, path, body, all);
}

int PageTest::OpenSession(const std::string& user, const std::string& password) {
  const PageAnswer answer = Post("api/sessions", {{"user", user}, {"password", password}});
  EXPECT_EQ(answer.status, 200) << answer.body;
  hasSession_ = true;
  return answer.status == 200 ? answer.Parsed().at("id").get<int>() : 0;
}

Json PageTest::Run(const std::string& code, const Json& parameters) {
  if (!hasSession_) OpenSession();
  const PageAnswer answer = Post("api/run", {{"session", 1}, {"code", code}, {"parameters", parameters}});
  EXPECT_EQ(answer.status, 200) << answer.body;
  return answer.Parsed();
}

Json PageTest::ValueOf(const std::string& code, const Json& parameters) {
  const Json outcome = Run(code, parameters);
  EXPECT_TRUE(outcome.contains("value")) << outcome;
  return outcome.value("value", Json());
}

int PageTest::Upload(const std::string& name, const std::string& content) {
  const PageAnswer answer =
      Ask("POST", "api/files?name=" + name, content, "Content-Type: application/octet-stream\r\n");
  EXPECT_EQ(answer.status, 200) << answer.body;
  return answer.Parsed().at("id").get<int>();
}

}  // namespace qv::cli::testing

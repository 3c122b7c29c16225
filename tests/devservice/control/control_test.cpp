// The control interface of a running service.
#include "devservice/control/control.h"

#include <thread>

#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using nlohmann::json;

class ControlTest : public TransferTest {
 protected:
  void SetUp() override {
    StartWith([](ServiceOptions& options) { options.control = true; });
  }
  std::string Path() const {
    const std::string url = service_->ControlUrl();
    return url.substr(service_->Url().size());
  }
  RawAnswer Page(const std::string& name) { return Get(Path() + name); }
  json Requests() { return json::parse(Page("/requests").body).at("requests"); }
  // What was sent, without the times and answers.
  json Sent() {
    json sent = json::array();
    for (const json& request : Requests()) {
      sent.emplace_back();
      for (const char* key : {"method", "target", "action", "body"}) sent.back()[key] = request.at(key);
    }
    return sent;
  }
  // The status of a new watcher of events.
  static std::string StatusOfWatcher(RawClient& watcher) {
    RawAnswer answer;
    for (int i = 0; i < 50 && answer.head.empty() && !answer.closed; ++i)
      answer = watcher.Receive(std::chrono::milliseconds(100));
    return StatusOf(answer);
  }
  RawAnswer PostOrder(const std::string& order, const std::string& page = "/faults") {
    return Ask(Request("POST " + Path() + page,
                       "Host: localhost\r\nContent-Length: " + std::to_string(order.size()) + "\r\n") +
               order);
  }
  void Order(const std::string& kind, int number, const std::string& text = "",
             const std::string& action = "Execute") {
    const json order = {{"kind", kind}, {"number", number}, {"text", text}, {"action", action}};
    const RawAnswer answer = PostOrder(order.dump());
    EXPECT_EQ(StatusOf(answer) + answer.body, "200{}\n") << order;
  }
  void ExpectRefused(const std::string& order, const std::string& reason) {
    const RawAnswer answer = PostOrder(order);
    EXPECT_EQ(StatusOf(answer), "400") << order.substr(0, 100);
    EXPECT_EQ(answer.body, reason + "\n") << order.substr(0, 100);
  }
};

TEST_F(ControlTest, ItsPathHoldsATokenThatNobodyKnows) {
  const std::string path = Path();
  EXPECT_EQ(path.substr(0, 9), "/control/");
  EXPECT_EQ(path.size(), 9U + 32U);
  for (const std::string& other : {std::string("/control"), std::string("/control/requests"),
                                   "/control/" + std::string(32, '0') + "/requests", path, path + "requests",
                                   "/odd/html" + path + "/requests"})
    EXPECT_EQ(StatusOf(Get(other)), "404") << other;
  service_->Stop();
  EXPECT_EQ(service_->ControlUrl(), "");
  service_->Start();
  EXPECT_NE(Path(), path);
}

TEST_F(ControlTest, ServiceHasNoneUnlessAsked) {
  StartWith(TestOptions());
  EXPECT_EQ(service_->ControlUrl(), "");
}

TEST_F(ControlTest, PagesHaveTheirMethods) {
  EXPECT_EQ(Page("/nothing").body, "There is no such page. Pages: counts, requests, events, faults, odd\n");
  EXPECT_EQ(StatusOf(Page("/nothing")), "404");
  EXPECT_EQ(StatusOf(Page("/faults")), "405");
  for (const char* page : {"/counts", "/requests"})
    EXPECT_EQ(StatusOf(Ask(Request("POST " + Path() + page, "Host: localhost\r\nContent-Length: 0\r\n"))),
              "405");
  EXPECT_EQ(StatusOf(Ask(Request("GET " + Path() + "/counts", "Host: evil.example\r\n"))), "403");
}

TEST_F(ControlTest, CountsAreThoseOfStats) {
  Execute("1");
  const json counts = json::parse(Page("/counts").body);
  EXPECT_EQ(counts["actions"], (json{{"CreateUserSession", 1}, {"CloseUserSession", 0}, {"Execute", 1}}));
  EXPECT_EQ(counts["openSessions"], 1);
  EXPECT_EQ(counts["scriptsRun"], 1);
}

TEST_F(ControlTest, RequestsAreKeptInTheirOrder) {
  EXPECT_EQ(Requests(), json::array());
  const std::string create = CreateEnvelope("Username=joe;Password=x;");
  const std::string close = CloseEnvelope("nobody");
  Post("/odd/ns2", "CreateUserSession", create);
  Post("", "CloseUserSession", close);
  Get("/stats?a=%41");
  Post("", "Frobnicate", "\xFF");
  const std::string service = kServicePath;
  const json expected = {
      {{"method", "POST"},
       {"target", "/odd/ns2" + service},
       {"action", "CreateUserSession"},
       {"body", create}},
      {{"method", "POST"}, {"target", service}, {"action", "CloseUserSession"}, {"body", close}},
      {{"method", "GET"}, {"target", "/stats?a=%41"}, {"action", ""}, {"body", ""}},
      {{"method", "POST"}, {"target", service}, {"action", ""}, {"body", "\xEF\xBF\xBD"}}};
  EXPECT_EQ(Sent(), expected);
}

TEST_F(ControlTest, ActionInQuotesIsKnown) {
  Ask(Request("POST " + std::string(kServicePath),
              "Host: localhost\r\nContent-Type: text/xml\r\nSOAPAction: \"http://a#Execute\"\r\n"
              "Content-Length: 0\r\n"));
  EXPECT_EQ(Requests().at(0).at("action"), "Execute");
}

TEST_F(ControlTest, UploadIsKeptWithoutItsBytes) {
  const std::string url = NewUploadUrl();
  EXPECT_EQ(StatusOf(Upload(url, "content")), "200");
  const json upload = Sent().back();
  EXPECT_EQ(upload, (json{{"method", "POST"}, {"target", PathIn(url)}, {"action", ""}, {"body", ""}}));
}

TEST_F(ControlTest, FaultIsAnsweredOnceAndNothingIsRun) {
  Order("fault", 7, "a < b & \"c\"");
  EXPECT_EQ(Fault("1"), "7|a < b & \"c\"|control");
  EXPECT_EQ(Value("1"), "xsd:int|1");
  const json counts = Stats();
  EXPECT_EQ(counts["actions"]["Execute"], 2);
  EXPECT_EQ(counts["scriptsRun"], 1);
  EXPECT_EQ(counts["faults"], 1);
}

TEST_F(ControlTest, FaultWaitsForItsAction) {
  Order("fault", 7, "no session", "CreateUserSession");
  Order("fault", 8, "no end", "CloseUserSession");
  EXPECT_EQ(FaultIn(Post("", "CreateUserSession", CreateEnvelope("Username=joe;")).body),
            "7|no session|control");
  EXPECT_EQ(Stats()["openSessions"], 0);
  EXPECT_EQ(Value("1"), "xsd:int|1");
  EXPECT_EQ(FaultIn(Post("", "CloseUserSession", CloseEnvelope(Session())).body), "8|no end|control");
  EXPECT_EQ(Value("2"), "xsd:int|2");
}

TEST_F(ControlTest, StatusComesWithItsText) {
  Order("status", 503, "busy");
  const RawAnswer answer = Run("", "1");
  EXPECT_EQ(StatusOf(answer) + " " + answer.body, "503 busy");
  Order("status", 200, "<html>", "");
  const RawAnswer page = Get("/stats");
  EXPECT_EQ(StatusOf(page) + " " + page.body, "200 <html>");
  EXPECT_EQ(Stats()["scriptsRun"], 0);
}

TEST_F(ControlTest, AnswerIsCutInTheMiddle) {
  const RawAnswer whole = Run("", "1");
  Order("cut", 0);
  const RawAnswer cut = Run("", "1");
  EXPECT_TRUE(cut.closed);
  EXPECT_EQ(HeaderOf(cut.head, "Content-Length"), std::to_string(whole.body.size()));
  EXPECT_EQ(cut.body, whole.body.substr(0, whole.body.size() / 2));
  EXPECT_EQ(Stats()["scriptsRun"], 2);
}

TEST_F(ControlTest, SilenceComesBeforeTheAnswer) {
  Session();
  Order("silence", 300);
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(Value("1"), "xsd:int|1");
  EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(300));
}

TEST_F(ControlTest, StopEndsASilence) {
  Session();
  Order("silence", 600000);
  RawClient client(Port(), PostRequest("", "Execute", ExecuteEnvelope(Session(), "1", NilParameters())));
  while (Stats()["scriptsRun"] == 0) std::this_thread::yield();
  StopAtOnce();
}

TEST_F(ControlTest, UploadsMeetOrdersForAnyRequest) {
  const std::string url = NewUploadUrl();
  Order("fault", 7, "not for an upload", "");
  Order("status", 507, "full", "");
  const RawAnswer full = Upload(url, "content");
  EXPECT_EQ(StatusOf(full) + " " + full.body, "507 full");
  EXPECT_EQ(Stats()["uploads"], 0);
  Order("silence", 200, "", "");
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(StatusOf(Upload(url, "content")), "200");
  EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(200));
  EXPECT_EQ(Stats()["uploads"], 1);
  EXPECT_EQ(FaultCode("1"), "7");
}

TEST_F(ControlTest, OddAnswersMeetTheNextRequests) {
  Session();
  EXPECT_EQ(PostOrder(R"({"names": "refuse", "requests": 2, "action": "Execute"})", "/odd").body, "{}\n");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Run("", "1").head, "");
  EXPECT_EQ(Value("1"), "xsd:int|1");
  EXPECT_EQ(Stats()["refused"], 2);
  EXPECT_EQ(Stats()["scriptsRun"], 1);
  EXPECT_EQ(StatusOf(PostOrder(R"({"names": "frob"})", "/odd")), "400");
  EXPECT_EQ(json::parse(Page("/odd").body).at("names").at(0).at("name"), "ns2");
}

TEST_F(ControlTest, OddAnswersAreAddedToThoseOfThePath) {
  PostOrder(R"({"names": "ns2", "requests": 0})", "/odd");
  const std::string body = Run("/odd/whitespace", "1").body;
  EXPECT_TRUE(Contains(body, "<soap:Body>\r\n  <NS2:ExecuteResponse "));
  PostOrder(R"({"names": ""})", "/odd");
  EXPECT_EQ(Value("1"), "xsd:int|1");
}

TEST_F(ControlTest, OddTransfersMeetUploads) {
  PostOrder(R"({"names": "upload-refused"})", "/odd");
  const std::string url = NewUploadUrl();
  EXPECT_EQ(StatusOf(Upload(url, "content")), "403");
  EXPECT_EQ(StatusOf(Upload(url, "content")), "200");
}

TEST_F(ControlTest, EventsShowRequestsAsTheyComeWithoutSecrets) {
  Post("", "CreateUserSession", CreateEnvelope("Username=joe;Password=c4n4ry&amp;;"));
  RawClient watcher(Port(), Request("GET " + Path() + "/events"));
  const std::string first = watcher.Receive(std::chrono::seconds(1)).body;
  EXPECT_EQ(first.substr(0, 28), "id: 1\nevent: request\ndata: {");
  EXPECT_TRUE(Contains(first, "<ConnectionString"));
  EXPECT_FALSE(Contains(first, "c4n4ry"));
  Execute("'seen'");
  RawClient second(Port(), Request("GET " + Path() + "/events"));
  const std::string all = second.Receive(std::chrono::seconds(1)).body;
  EXPECT_TRUE(Contains(all, "'seen'"));
  EXPECT_FALSE(Contains(all, Session()));
  StopAtOnce();
}

TEST_F(ControlTest, RequestsHaveTheirAnswers) {
  Execute("'seen'");
  Order("silence", 1);
  Get("/nothing");
  const json requests = Requests();
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_EQ(requests[1]["number"], 2);
  EXPECT_EQ(requests[1]["status"], 200);
  EXPECT_GE(requests[1]["milliseconds"], 0.0);
  EXPECT_EQ(requests[1]["time"].get<std::string>().size(), 24U);
  EXPECT_TRUE(Contains(requests[0]["answer"], Session()));
  EXPECT_TRUE(Contains(requests[1]["answer"], ">seen<"));
  EXPECT_EQ(requests[2]["status"], 404);
}

TEST_F(ControlTest, RequestWithoutAnAnswerHasTheStatus0) {
  Session();
  EXPECT_EQ(StatusOf(PostOrder(R"({"names":"refuse","action":"Execute"})", "/odd")), "200");
  Execute("1");
  EXPECT_EQ(Requests()[1]["status"], 0);
  EXPECT_EQ(Requests()[1]["answer"], "");
}

TEST_F(ControlTest, UploadsHaveTheirAnswers) {
  const std::string url = NewUploadUrl();
  EXPECT_EQ(StatusOf(Upload(url, "content")), "200");
  EXPECT_EQ(StatusOf(Upload(url + "0", "content")), "404");
  const json requests = Requests();
  EXPECT_EQ(requests[2]["status"], 200);
  EXPECT_EQ(requests[3]["status"], 404);
}

TEST_F(ControlTest, EventsComeBeforeTheirAnswers) {
  const std::string envelope = ExecuteEnvelope(Session(), "for (;;);", NilParameters());
  const RawClient running(Port(), PostRequest("", "Execute", envelope));
  while (Stats()["scriptsRun"] == 0) std::this_thread::yield();
  RawClient watcher(Port(), Request("GET " + Path() + "/events"));
  const std::string events = watcher.Receive(std::chrono::seconds(2)).body;
  const std::size_t script = events.find("for (;;);");  // the question for the counts may come before it
  ASSERT_NE(script, std::string::npos) << events;
  const std::size_t begin = events.rfind("id: ", script);
  const std::string event = events.substr(begin, events.find("\n\n", begin) - begin);
  EXPECT_TRUE(Contains(event, "event: request\n"));
  EXPECT_FALSE(Contains(event, "\"status\""));
  StopAtOnce();
}

TEST_F(ControlTest, EventsEndWithTheServiceAndWithTheirClient) {
  std::vector<std::unique_ptr<RawClient>> watchers;
  for (int i = 0; i < 16; ++i) {
    watchers.push_back(std::make_unique<RawClient>(Port(), Request("GET " + Path() + "/events")));
    EXPECT_EQ(StatusOfWatcher(*watchers.back()), "200");
  }
  EXPECT_EQ(Page("/events").body, "16 clients watch the events already.\n");
  watchers.pop_back();
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  std::string status;
  do {
    RawClient watcher(Port(), Request("GET " + Path() + "/events"));
    status = StatusOfWatcher(watcher);
  } while (status != "200" && std::chrono::steady_clock::now() < end);
  EXPECT_EQ(status, "200");
  EXPECT_EQ(StatusOf(Ask(Request("HEAD " + Path() + "/events", "Host: localhost\r\nConnection: close\r\n"))),
            "405");
  StopAtOnce();
}

TEST_F(ControlTest, HostileOrdersAreRefusedWithAReason) {
  ExpectRefused("", "The order is not a JSON object.");
  ExpectRefused(std::string(1000000, '['), "The order is not a JSON object.");
  ExpectRefused(std::string(1048577, ' '), "The order is longer than 1 MiB.");
  ExpectRefused(R"({"kind": "cut", "action": "Frobnicate"})",
                "The action of the order is none of the service.");
  ExpectRefused(R"({"kind": "status", "number": 99})",
                "The number of the kind status is not a whole number from 200 to 599.");
  for (std::size_t i = 0; i < FaultOrders::kMost; ++i) Order("cut", 0, "", "CloseUserSession");
  ExpectRefused(R"({"kind": "cut"})", "Too many orders wait for a request.");
  EXPECT_EQ(Value("1"), "xsd:int|1");
}

TEST(RequestLog, ForgetsTheOldest) {
  RequestLog log;
  HttpRequest request;
  for (std::size_t i = 0; i <= RequestLog::kMostRequests; ++i) {
    request.target = std::to_string(i);
    log.Add(request, "");
  }
  json requests = json::parse(log.Json(false))["requests"];
  EXPECT_EQ(requests.size(), RequestLog::kMostRequests);
  EXPECT_EQ(requests.front()["target"], "1");
  EXPECT_EQ(requests.back()["target"], std::to_string(RequestLog::kMostRequests));
}

TEST(RequestLog, KeepsALimitedNumberOfBytes) {
  RequestLog log;
  HttpRequest request;
  request.body.assign(RequestLog::kMostBodyBytes + 1, 'a');
  for (int i = 0; i < 65; ++i) log.Add(request, "");
  const json requests = json::parse(log.Json(false))["requests"];
  EXPECT_EQ(requests.size(), RequestLog::kMostBytes / RequestLog::kMostBodyBytes);
  EXPECT_EQ(requests.front()["body"].get<std::string>().size(), RequestLog::kMostBodyBytes);
}

TEST(RequestLog, KeepsNoPartOfAnId) {
  RequestLog log;
  const std::string id(32, 'a');
  HttpRequest request;
  request.body = std::string(RequestLog::kMostBodyBytes - 31, ' ') + id;
  log.Add(request, "");
  request.body = std::string(RequestLog::kMostBodyBytes - 32, ' ') + id + " ";
  log.Add(request, "");
  const json requests = json::parse(log.Json(true))["requests"];
  EXPECT_EQ(requests[0]["body"].get<std::string>().find('a'), std::string::npos);
  const std::string whole = requests[1]["body"];
  EXPECT_EQ(whole.substr(whole.size() - 4), " ***");
}

TEST(RequestLog, EventsComeInPieces) {
  RequestLog log;
  HttpRequest request;
  request.body.assign(1000000, ' ');
  for (int i = 0; i < 60; ++i) log.Add(request, "");
  std::uint64_t last = 0;
  int pieces = 0;
  std::string all;
  for (std::string piece; !(piece = log.EventsAfter(last)).empty(); ++pieces) {
    EXPECT_LT(piece.size(), 1200000U);
    all += piece;
  }
  EXPECT_GT(pieces, 2);
  EXPECT_EQ(last, 60U);
  EXPECT_TRUE(Contains(all, "id: 60\n"));
  EXPECT_TRUE(Contains(all, "\"bodyBytes\":1000000"));
  log.AddAnswer(60, PlainAnswer(200, "answer"));
  EXPECT_TRUE(Contains(log.EventsAfter(last), "\"answerBytes\":6"));
  log.AddAnswer(61, PlainAnswer(200, "of no request"));
  EXPECT_EQ(log.EventsAfter(last), "");
}

}  // namespace
}  // namespace qv::devservice::testing

// Sessions, runs and files of the page.
#include <chrono>
#include <future>
#include <set>
#include <thread>

#include "tests/tools/page/page_fixture.h"
#include "tools/page/query_value.h"

namespace qv::cli {
namespace {

using namespace testing;
using devservice::testing::HeaderOf;
using std::chrono::steady_clock;

class PageCalls : public PageTest {
 protected:
  static Json Parameter(const std::string& name, const std::string& type, const std::string& value) {
    return {{"name", name}, {"type", type}, {"value", value}};
  }
  static Json FileParameter(const std::string& name, int file) {
    return {{"name", name}, {"type", "file"}, {"file", file}};
  }
  static void ExpectRefused(const PageAnswer& answer, int status, const std::string& message) {
    EXPECT_EQ(answer.status, status);
    EXPECT_EQ(answer.Message(), message);
  }
};

TEST_F(PageCalls, StateIsWhatThePageNeeds) {
  const Json state = Ask("GET", "api/state").Parsed();
  EXPECT_EQ(state.at("url"), service_->Url());
  EXPECT_EQ(state.at("version"), scriptwells::Version());
  EXPECT_EQ(state.at("needsPassword"), false);
  EXPECT_EQ(state.at("types").size(), 13U);
  EXPECT_EQ(state.at("languages"), Json({"JavaScript"}));
  EXPECT_EQ(state.at("script"),
            Json({{"code", ""}, {"language", "JavaScript"}, {"parameters", Json::array()}}));
  EXPECT_EQ(state.at("sessions"), Json::array());
  EXPECT_EQ(state.at("files"), Json::array());
}

TEST_F(PageCalls, SessionsAreOpenedAndClosed) {
  Start({{"joe", "s;=cret"}, {"ann", "secret"}});
  EXPECT_EQ(Ask("GET", "api/state").Parsed().at("needsPassword"), true);
  EXPECT_EQ(Post("api/sessions", {{"user", "ann"}, {"password", "wrong"}}).status, 400);
  EXPECT_EQ(Post("api/sessions", {{"user", "joe"}, {"password", "s;=cret"}}).status, 400);
  EXPECT_EQ(Post("api/sessions", {{"user", 5}}).status, 400);
  const PageAnswer opened = Post("api/sessions", {{"user", "ann"}, {"password", "secret"}});
  EXPECT_EQ(opened.status, 200);
  EXPECT_EQ(opened.Parsed().at("user"), "ann");
  EXPECT_EQ(opened.Parsed().at("runs"), 0);
  EXPECT_EQ(opened.Parsed().at("opened").get<std::string>().size(), 20U);
  EXPECT_EQ(Post("api/run", {{"session", 1}, {"code", "1"}}).status, 200);
  EXPECT_EQ(Ask("GET", "api/state").Parsed().at("sessions").at(0).at("runs"), 1);
  EXPECT_EQ(Ask("DELETE", "api/sessions/1").status, 204);
  EXPECT_EQ(Ask("GET", "api/counts").Parsed().at("openSessions"), 0);
  ExpectRefused(Ask("DELETE", "api/sessions/1"), 404, "There is no such session.");
  ExpectRefused(Post("api/run", {{"session", 1}, {"code", "1"}}), 404, "There is no such session.");
}

TEST_F(PageCalls, SessionsAreLimited) {
  for (std::size_t i = 0; i < PageSessions::kMostSessions; ++i) OpenSession();
  ExpectRefused(Post("api/sessions", {{"user", "page"}}), 400, "20 sessions are open already; close one.");
  EXPECT_EQ(Ask("DELETE", "api/sessions/7").status, 204);
  OpenSession();
}

TEST_F(PageCalls, OwnUserNeedsNoPassword) {
  const devservice::ServiceUser user{"0123456789abcdef0123456789abcdef", "fedcba9876543210fedcba9876543210"};
  Start({user}, [&](devservice::ServiceOptions&, PagePlace& place) {
    place.ownUser = user;
    place.needsPassword = false;
  });
  EXPECT_EQ(Post("api/sessions", {{"user", "page"}}).Parsed().at("user"), "page");
  EXPECT_EQ(Post("api/sessions", {{"user", "joe"}}).status, 400);
  EXPECT_EQ(all_.find(user.name), std::string::npos);
}

TEST_F(PageCalls, ValuesHaveTheirTypes) {
  const std::pair<const char*, Json> rows[] = {
      {"6 * 7", {{"type", "int"}, {"value", 42}, {"tag", 22}}},
      {"'a\\n\"b\u00e9'", {{"type", "string"}, {"value", "a\n\"b\u00e9"}, {"tag", 8}}},
      {"1.5", {{"type", "double"}, {"value", 1.5}, {"tag", 5}}},
      {"9007199254740993", {{"type", "double"}, {"value", 9007199254740992.0}, {"tag", 5}}},
      {"NaN", {{"type", "double"}, {"value", "NaN"}, {"tag", 5}}},
      {"true", {{"type", "boolean"}, {"value", true}, {"tag", 11}}},
      {"typed.long(5)", {{"type", "empty"}, {"value", nullptr}, {"tag", 0}}},
      {"typed.date('2024-03-05')",
       {{"type", "date"}, {"value", "2024-03-05"}, {"tag", 7}, {"serial", 45356.0}}},
  };
  for (const auto& [code, value] : rows) EXPECT_EQ(ValueOf(code), value) << code;
  EXPECT_EQ(Run("typed.long(5)").at("notes").size(), 1U);
}

TEST_F(PageCalls, TablesHaveColumnsAndRows) {
  const Json table = ValueOf("[{city: 'Rome', people: 2748109}, {city: null, people: 1}]");
  EXPECT_EQ(table.at("type"), "table");
  EXPECT_EQ(table.at("columns").at(1).at("name"), "people");
  EXPECT_EQ(table.at("columns").at(1).at("type"), "int");
  EXPECT_EQ(table.at("rows"), Json::parse(R"([["Rome",2748109],["",1]])"));
}

TEST_F(PageCalls, ParametersAreTyped) {
  EXPECT_EQ(ValueOf("[parameterList.map(p => p.type), parameters.a + 1, parameters['b c']].join()",
                    Json::array({Parameter("a", "int", "2"), Parameter("b c", "string", "x=y:z")}))
                .at("value"),
            "int,string,3,x=y:z");
  const std::pair<Json, const char*> wrong[] = {
      {Json::array({Parameter("a", "int", "x")}), "parameter 'a': 'x' is not a whole number"},
      {Json::array({Parameter("", "int", "1")}), "a parameter has no name"},
      {Json::array({Parameter("a", "int", "1"), Parameter("a", "int", "2")}), "parameter 'a' is given twice"},
  };
  for (const auto& [parameters, message] : wrong) {
    const Json outcome = Run("1", parameters);
    EXPECT_EQ(outcome.at("error").at("message"), message);
    EXPECT_EQ(outcome.at("error").at("phase"), "conversion");
  }
  EXPECT_EQ(Run("1", Json::array({Parameter("a", "double", "123456.789")})).at("notes"),
            Json({"parameter 'a' travels with 6 significant digits"}));
}

TEST_F(PageCalls, FaultsHaveTheirPlace) {
  const Json fault = Run("1;\n2;\nfoo()").at("error");
  EXPECT_EQ(fault.at("phase"), "script");
  EXPECT_EQ(fault.at("code"), 1010);
  EXPECT_EQ(fault.at("line"), 3);
  EXPECT_EQ(Run("throw new ScriptError(5, 'no such customer')").at("error").at("code"), 5);
  EXPECT_EQ(Run("null").at("error").at("phase"), "answer");
  EXPECT_EQ(Run("").at("error").at("phase"), "conversion");
}

TEST_F(PageCalls, ConsoleBelongsToItsRun) {
  EXPECT_EQ(Run("console.log('a', 1); console.warn('b'); 1").at("console"),
            Json::parse(R"([{"level":"log","text":"a 1"},{"level":"warn","text":"b"}])"));
  EXPECT_EQ(Run("console.error('before'); boo()").at("console").size(), 1U);
  EXPECT_EQ(Run("1").at("console"), Json::array());
  OpenSession();
  std::vector<std::future<PageAnswer>> runs;
  for (int session : {1, 2})
    runs.push_back(std::async(std::launch::async, [this, session] {
      const std::string code = "for (let i = 0; i < 50; ++i) console.log('" + std::to_string(session) + "')";
      const std::string bytes = Bytes(
          "POST", "api/run", Json({{"session", session}, {"code", code}}).dump(),
          "Cookie: " + cookie_ + "\r\nOrigin: http://" + Host() + "\r\nContent-Type: application/json\r\n");
      const auto raw = devservice::testing::RawClient(service_->Port(), bytes).Receive();
      return PageAnswer{200, raw.head, raw.body};
    }));
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const Json console = runs[i].get().Parsed().at("console");
    EXPECT_EQ(console.size(), 50U);
    for (const Json& message : console) EXPECT_EQ(message.at("text"), std::to_string(i + 1));
  }
}

TEST_F(PageCalls, RunsAreCancelled) {
  OpenSession();
  const std::string bytes =
      Bytes("POST", "api/run", R"({"session":1,"run":"r1","code":"for (;;);"})",
            "Cookie: " + cookie_ + "\r\nOrigin: http://" + Host() + "\r\nContent-Type: application/json\r\n");
  devservice::testing::RawClient client(service_->Port(), bytes);
  while (Ask("GET", "api/counts").Parsed().at("scriptsRun") == 0) std::this_thread::yield();
  ExpectRefused(Post("api/run", {{"session", 1}, {"run", "r1"}, {"code", "1"}}), 400,
                "A run of this name is there already.");
  EXPECT_EQ(Post("api/cancel", {{"run", "r2"}}).body, "{}\n");
  const auto begin = steady_clock::now();
  EXPECT_EQ(Post("api/cancel", {{"run", "r1"}}).body, "{}\n");
  const Json outcome = Json::parse(client.Receive().body);
  EXPECT_EQ(outcome.at("error").at("phase"), "cancelled");
  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST_F(PageCalls, FilesAreSentAndUsed) {
  const int file = Upload("dir%2Fr%C3%A9sum%C3%A9%20(1).txt", std::string("a\0b", 3));
  EXPECT_EQ(Ask("GET", "api/files").Parsed(),
            Json::parse(R"([{"id":1,"name":"résumé (1).txt","size":3,"from":"upload"}])"));
  EXPECT_EQ(ValueOf("parameters.f.size", Json::array({FileParameter("f", file)})).at("value"), 3);
  const PageAnswer download = Ask("GET", "api/files/1");
  EXPECT_EQ(download.body, std::string("a\0b", 3));
  EXPECT_EQ(HeaderOf(download.head, "Content-Type"), "application/octet-stream");
  EXPECT_EQ(HeaderOf(download.head, "Content-Disposition"),
            "attachment; filename*=UTF-8''r%C3%A9sum%C3%A9%20%281%29.txt");
  EXPECT_EQ(Ask("DELETE", "api/files/1").status, 204);
  ExpectRefused(Ask("GET", "api/files/1"), 404, "There is no such file.");
  EXPECT_EQ(Post("api/run",
                 {{"session", 1}, {"code", "1"}, {"parameters", Json::array({FileParameter("f", file)})}})
                .status,
            404);
}

TEST(PageFiles, NamesAreTakenFromTheQuery) {
  for (const auto& [query, name] :
       {std::pair<const char*, const char*>("name=a.txt", "a.txt"),
        {"size=1&namex=b&name=r%C3%A9sum%c3%a9+2.txt&name=c", "r\xC3\xA9sum\xC3\xA9 2.txt"},
        {"name=%2Fetc%5C..%2Fpasswd", "passwd"},
        {"name=a%0d%0ab%7F%C2%96%C2%A0", "a__b__\xC2\xA0"},
        {"name=%ff%C2", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"name=%zz%4", "%zz%4"},
        {"name=..", "file"},
        {"name", "file"},
        {"", "file"}})
    EXPECT_EQ(PlainFileName(QueryValue(std::string("/page/api/files?") + query, "name")), name) << query;
}

TEST_F(PageCalls, FilesOfScriptsAreFetched) {
  const Json value = ValueOf("publish('out.txt', 'text')");
  EXPECT_EQ(
      value,
      Json({{"type", "url"}, {"value", service_->Url() + "/files/***/"}, {"caption", ""}, {"file", 1}}));
  EXPECT_EQ(Ask("GET", "api/files").Parsed(),
            Json::parse(R"([{"id":1,"name":"file-1","size":null,"from":"script"}])"));
  const PageAnswer download = Ask("GET", "api/files/1");
  EXPECT_EQ(download.body, "text");
  EXPECT_EQ(HeaderOf(download.head, "Content-Disposition"), "attachment; filename*=UTF-8''out.txt");
  EXPECT_EQ(Ask("GET", "api/files").Parsed().at(0).at("name"), "out.txt");
  EXPECT_EQ(ValueOf("parameters.f.text()", Json::array({FileParameter("f", 1)})).at("value"), "text");
  // A file that was fetched stays; another ends with its session.
  EXPECT_EQ(ValueOf("publish('more.txt', 'text')").at("file"), 2);
  EXPECT_EQ(Ask("DELETE", "api/sessions/1").status, 204);
  EXPECT_EQ(Ask("GET", "api/files").Parsed().size(), 1U);
}

TEST_F(PageCalls, OtherAddressesAreTexts) {
  for (const char* code : {"'http://127.0.0.1:1/files/' + '0'.repeat(32) + '/'", "'/files/'", "'http://a/'"})
    EXPECT_EQ(ValueOf(code).at("type"), "string") << code;
}

TEST_F(PageCalls, RequestsOfThePageAreInTheLogWithTheirAnswers) {
  Run("'seen'");
  const Json requests = Ask("GET", "api/requests").Parsed().at("requests");
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests.at(0).at("action"), "CreateUserSession");
  EXPECT_EQ(requests.at(1).at("number"), 2);
  EXPECT_EQ(requests.at(1).at("status"), 200);
  EXPECT_GT(requests.at(1).at("milliseconds"), 0);
  EXPECT_NE(requests.at(1).at("answer").get<std::string>().find(">seen<"), std::string::npos);
}

TEST_F(PageCalls, FaultsAndOddAnswersAreOrdered) {
  OpenSession();
  EXPECT_EQ(
      Post("api/faults", {{"kind", "fault"}, {"number", 7}, {"text", "ordered"}, {"action", "Execute"}}).body,
      "{}\n");
  EXPECT_EQ(Run("1").at("error").at("message"), "ordered");
  EXPECT_GT(Ask("GET", "api/odd").Parsed().at("names").size(), 40U);
  EXPECT_EQ(Post("api/odd", {{"names", "refuse"}, {"action", "Execute"}}).body, "{}\n");
  EXPECT_EQ(Run("1").at("error").at("phase"), "wait");
  EXPECT_EQ(ValueOf("1").at("value"), 1);
  ExpectRefused(Post("api/faults", {{"kind", "nothing"}}), 400,
                "The kind of the order is not one of fault, status, cut and silence.");
}

TEST_F(PageCalls, HostileBodiesAreRefused) {
  OpenSession();
  for (const std::string& body :
       {std::string(), std::string("[]"), std::string("{\"code\":5}"), std::string("{\"session\":-1}"),
        std::string("{\"session\":1e99}"), std::string("{\"parameters\":{}}"),
        std::string("{\"parameters\":[1]}"), R"({"run":")" + std::string(101, 'r') + "\"}",
        std::string(1000000, '['), std::string("{\"code\":\"\xff\"}")}) {
    const PageAnswer answer = Ask("POST", "api/run", body);
    EXPECT_EQ(answer.status, 400) << body.substr(0, 100);
    EXPECT_FALSE(answer.Message().empty());
  }
  EXPECT_EQ(Ask("POST", "api/copy", "{\"code\":\"a\\u0000\"}").status, 400);
}

// What stands where a text or a number should may be as deep as a body is long.
TEST_F(PageCalls, DeepBodiesAreRefused) {
  OpenSession();
  const std::string deep = std::string(200000, '[') + std::string(200000, ']');
  for (const auto& [path, start] : {std::pair<const char*, const char*>("run", "{\"parameters\":"),
                                    {"copy", "{\"parameters\":"},
                                    {"copy", "{\"code\":"},
                                    {"sessions", "{\"user\":"},
                                    {"odd", "{\"names\":"},
                                    {"odd", R"({"names":"cut","requests":)"},
                                    {"odd", R"({"names":"cut","chance":)"},
                                    {"faults", R"({"kind":"fault","number":)"}})
    EXPECT_EQ(Ask("POST", std::string("api/") + path, start + deep + "}").status, 400) << path << start;
}

TEST_F(PageCalls, CallsAtOneTimeAreLimited) {
  OpenSession();
  const std::string headers =
      "Cookie: " + cookie_ + "\r\nOrigin: http://" + Host() + "\r\nContent-Type: application/json\r\n";
  std::vector<std::unique_ptr<devservice::testing::RawClient>> clients;
  clients.reserve(PageSessions::kMostCalls);
  for (int i = 0; i < PageSessions::kMostCalls; ++i)
    clients.push_back(std::make_unique<devservice::testing::RawClient>(
        service_->Port(), Bytes("POST", "api/run", R"({"session":1,"code":"for (;;);"})", headers)));
  PageAnswer answer;
  do answer = Post("api/run", {{"session", 99}, {"code", "1"}});
  while (answer.status == 404);
  ExpectRefused(answer, 503, "The page runs 8 calls already.");
  // The end of the service ends them all.
  const auto begin = steady_clock::now();
  page_->Stop();
  service_->Stop();
  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(2));
  const Json outcome = Json::parse(clients[0]->Receive().body, nullptr, false);
  EXPECT_TRUE(outcome.is_discarded() || outcome.contains("error"));
}

}  // namespace
}  // namespace qv::cli

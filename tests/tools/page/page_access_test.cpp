// Who may use the page, and the files that it consists of.
#include "tests/tools/page/page_fixture.h"

namespace qv::cli {
namespace {

using namespace testing;
using devservice::testing::HeaderOf;

class PageAccess : public PageTest {
 protected:
  PageAnswer Exchange(const std::string& token, const std::string& cookie = "") {
    return AskPlainly("POST", "enter", Json({{"token", token}}).dump(),
                      "Origin: http://" + Host() + "\r\nContent-Type: application/json\r\n" +
                          (cookie.empty() ? "" : "Cookie: " + cookie + "\r\n"));
  }
};

TEST_F(PageAccess, TheTokenLetsOneBrowserIn) {
  Start();
  EXPECT_EQ(address_.substr(0, address_.find('#')), service_->Url() + "/page/");
  EXPECT_EQ(Token().size(), 32U);
  EXPECT_EQ(Exchange("").status, 403);
  EXPECT_EQ(Exchange(std::string(32, '0')).status, 403);
  const PageAnswer entered = Exchange(Token());
  EXPECT_EQ(entered.status, 204);
  const std::string header = HeaderOf(entered.head, "Set-Cookie");
  const std::string name = "scriptwells-" + std::to_string(service_->Port());
  EXPECT_EQ(header.substr(0, name.size() + 1), name + "=");
  EXPECT_EQ(header.substr(name.size() + 33), "; Path=/page/; HttpOnly; SameSite=Strict");
  const std::string cookie = header.substr(0, header.find(';'));
  EXPECT_EQ(Exchange(Token()).status, 403);
  EXPECT_EQ(Exchange(Token(), cookie + "0").status, 403);
  EXPECT_EQ(Exchange(Token(), cookie).status, 204);
  EXPECT_EQ(Exchange("", cookie).status, 403);
  EXPECT_EQ(AskPlainly("GET", "api/state", "", "Cookie: " + cookie + "\r\n").status, 200);
}

TEST_F(PageAccess, WithoutTheCookieNothingIsAnswered) {
  Start();
  const std::string own = "Origin: http://" + Host() + "\r\nContent-Type: application/json\r\n";
  for (const char* path : {"api/state", "api/files", "api/files/1", "api/counts", "api/requests",
                           "api/events", "api/odd", "api/nothing"})
    EXPECT_EQ(AskPlainly("GET", path).status, 401) << path;
  for (const char* path :
       {"api/sessions", "api/run", "api/cancel", "api/files?name=a", "api/copy", "api/faults"})
    EXPECT_EQ(AskPlainly("POST", path, "{}", own).status, 401) << path;
  EXPECT_EQ(AskPlainly("DELETE", "api/sessions/1", "", own).status, 401);
  EXPECT_EQ(AskPlainly("GET", "api/state").Message(), "Open the address that the program has printed.");
}

TEST_F(PageAccess, ChangesComeFromThePageItself) {
  Enter();
  const std::string cookie = "Cookie: " + cookie_ + "\r\n";
  const std::string json = "Content-Type: application/json\r\n";
  const std::string origin = "Origin: http://" + Host() + "\r\n";
  const std::string body = R"({"run":"r1"})";
  EXPECT_EQ(AskPlainly("POST", "api/cancel", body, cookie + json + origin).status, 200);
  EXPECT_EQ(AskPlainly("POST", "api/cancel", body, cookie + json).status, 403);
  EXPECT_EQ(AskPlainly("DELETE", "api/files/1", "", cookie).status, 403);
  EXPECT_EQ(AskPlainly("POST", "api/cancel", body, cookie + origin).status, 415);
  EXPECT_EQ(AskPlainly("POST", "api/cancel", body, cookie + origin + "Content-Type: text/plain\r\n").status,
            415);
  EXPECT_EQ(AskPlainly("POST", "api/cancel", body, cookie + json + "Origin: http://other.example\r\n").status,
            403);
  EXPECT_EQ(AskPlainly("POST", "api/cancel", body, cookie + json + "Origin: null\r\n").status, 403);
  // Another port is another origin, but no other site: its pages send the cookie.
  EXPECT_EQ(AskPlainly("POST", "api/cancel", body, cookie + json + "Origin: http://127.0.0.1:1\r\n").status,
            403);
  for (const auto& [site, status] : {std::pair<const char*, int>("same-origin", 200),
                                     {"none", 200},
                                     {"same-site", 403},
                                     {"cross-site", 403}})
    EXPECT_EQ(AskPlainly("GET", "api/state", "", cookie + "Sec-Fetch-Site: " + site + "\r\n").status, status)
        << site;
  EXPECT_EQ(
      AskPlainly("POST", "api/cancel", body, cookie + json + origin + "Sec-Fetch-Site: none\r\n").status,
      403);
}

TEST_F(PageAccess, ForeignHostNamesAreRefused) {
  Start();
  const devservice::testing::RawAnswer raw =
      devservice::testing::RawClient(service_->Port(),
                                     "GET /page/ HTTP/1.1\r\nHost: evil.example\r\nConnection: close\r\n\r\n")
          .Receive();
  EXPECT_EQ(StatusOf(raw), "403");
}

TEST_F(PageAccess, EveryAnswerHasTheHeadersOfThePage) {
  for (const PageAnswer& answer : {Ask("GET", ""), Ask("GET", "nothing"), Ask("GET", "api/state"),
                                   Ask("GET", "api/counts"), Ask("GET", "lib/chart.js/chart.min.js"),
                                   AskPlainly("GET", "api/state"), Ask("DELETE", "api/files/1")}) {
    EXPECT_EQ(
        HeaderOf(answer.head, "Content-Security-Policy"),
        "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; connect-src 'self'; "
        "font-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'");
    EXPECT_EQ(HeaderOf(answer.head, "Referrer-Policy"), "no-referrer");
    EXPECT_EQ(HeaderOf(answer.head, "X-Content-Type-Options"), "nosniff");
    EXPECT_EQ(HeaderOf(answer.head, "Cache-Control"), "no-store");
    EXPECT_EQ(HeaderOf(answer.head, "Cross-Origin-Resource-Policy"), "same-origin");
  }
}

TEST_F(PageAccess, StaticFilesHaveTheirTypes) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "text/html; charset=utf-8"},
      {"index.html", "text/html; charset=utf-8"},
      {"lib/codemirror/lib/codemirror.js", "text/javascript; charset=utf-8"},
      {"lib/codemirror/lib/codemirror.css", "text/css; charset=utf-8"},
      {"lib/chart.js/chart.min.js", "text/javascript; charset=utf-8"},
  };
  for (const auto& [path, type] : rows) {
    const PageAnswer answer = AskPlainly("GET", path);
    EXPECT_EQ(answer.status, 200) << path;
    EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), type) << path;
    EXPECT_EQ(std::to_string(answer.body.size()), HeaderOf(answer.head, "Content-Length")) << path;
    EXPECT_GT(answer.body.size(), 100U) << path;
  }
  EXPECT_EQ(AskPlainly("GET", "").body.substr(0, 15), "<!doctype html>");
  const PageAnswer head = AskPlainly("HEAD", "index.html");
  EXPECT_EQ(head.status, 200);
  EXPECT_EQ(head.body, "");
}

TEST_F(PageAccess, NothingElseIsServed) {
  for (const char* path :
       {"nothing", "page.cpp", "../page.cpp", "lib/", "lib/codemirror", "lib/codemirror/LICENSE",
        "lib/../../../../etc/passwd", "lib/codemirror/lib/../lib/codemirror.js", "lib/jquery/jquery.js",
        "%2e%2e/%2e%2e/etc/passwd"})
    EXPECT_EQ(AskPlainly("GET", path).status, 404) << path;
  EXPECT_EQ(Ask("POST", "index.html", "{}").status, 405);
}

TEST_F(PageAccess, UnknownPartsAndMethods) {
  EXPECT_EQ(Ask("GET", "api/").status, 404);
  EXPECT_EQ(Ask("GET", "api/nothing").status, 404);
  EXPECT_EQ(Ask("GET", "api/sessions/x").status, 404);
  EXPECT_EQ(Ask("GET", "api/run").status, 405);
  EXPECT_EQ(Ask("HEAD", "api/events").status, 405);
  EXPECT_EQ(Ask("DELETE", "api/state").status, 405);
  EXPECT_EQ(Ask("POST", "api/state", "{}").status, 405);
}

TEST_F(PageAccess, ServiceWithoutAPageHasNone) {
  Start({}, [](devservice::ServiceOptions& options, PagePlace&) { options.page = nullptr; });
  EXPECT_EQ(AskPlainly("GET", "").status, 404);
  EXPECT_EQ(AskPlainly("DELETE", "api/files/1").status, 405);
}

}  // namespace
}  // namespace qv::cli

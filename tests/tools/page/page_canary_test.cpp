// The password, the session's id, tickets and ids of files are searched in all that the page gets.
#include <set>

#include "fixtures/secret_forms.h"
#include "tests/tools/page/page_fixture.h"

namespace qv::cli {
namespace {

using namespace testing;
using devservice::testing::RawClient;
using test::FormIn;

const std::string kPassword = "s3<&\">' %+/\\\xC3\xA9t\xC3\xA9 canary";

class PageCanary : public PageTest {
 protected:
  // All ids that the service made: of the requests and answers without masks, in which they are 32 digits.
  std::set<std::string> Ids() const {
    const std::string path = service_->ControlUrl().substr(service_->Url().size());
    const std::string request =
        "GET " + path + "/requests HTTP/1.1\r\nHost: " + Host() + "\r\nConnection: close\r\n\r\n";
    const std::string log = RawClient(service_->Port(), request).Receive().body;
    std::set<std::string> ids;
    for (std::size_t at = 0; at < log.size();) {
      const std::size_t end = std::min(log.find_first_not_of("0123456789abcdef", at), log.size());
      if (end - at == 32) ids.insert(log.substr(at, 32));
      at = end + 1;
    }
    EXPECT_NE(log.find("canary"), std::string::npos);
    return ids;
  }
};

TEST_F(PageCanary, NoSecretIsInAnyAnswer) {
  Start({{"joe", kPassword}},
        [](devservice::ServiceOptions& options, PagePlace&) { options.control = true; });
  EXPECT_EQ(Post("api/sessions", {{"user", "joe"}, {"password", kPassword + "x"}}).status, 400);
  EXPECT_EQ(Post("api/sessions", {{"user", "joe"}, {"password", 5}}).status, 400);
  OpenSession("joe", kPassword);
  const RawClient unread(service_->Port());
  RawClient watcher(service_->Port(), Bytes("GET", "api/events", "", "Cookie: " + cookie_ + "\r\n"));
  const int file = Upload("a.txt", "content");
  const Json parameters = {{{"name", "f"}, {"type", "file"}, {"file", file}}};
  Run("console.log(parameters.f.ticket); uploadUrl() + ' ' + parameters.f.ticket", parameters);
  Run("throw new Error(parameters.f.ticket)", parameters);
  Run("[{url: uploadUrl(), ticket: parameters.f.ticket}]", parameters);
  EXPECT_EQ(Run("publish('b.txt', 'content')").at("value").at("file"), 2);
  Run("'see ' + publish('c.txt', 'content')");
  EXPECT_EQ(Ask("GET", "api/files/2").body, "content");
  for (const char* odd : {"utf16", "latin1", "spoil", "ns2", "html", "cut", "chunked"}) {
    Post("api/odd", {{"names", odd}, {"requests", 2}});
    Run("uploadUrl()");
    Post("api/sessions", {{"user", "joe"}, {"password", kPassword}});
    Post("api/odd", {{"names", ""}});
  }
  Post("api/copy", {{"session", 1}, {"code", "1"}, {"parameters", parameters}});
  const std::set<std::string> ids = Ids();
  EXPECT_EQ(Ask("DELETE", "api/sessions/1").status, 204);
  for (const char* path : {"api/state", "api/files", "api/counts", "api/requests", "api/odd"})
    Ask("GET", path);
  all_ += watcher.Receive(std::chrono::seconds(2)).body;

  EXPECT_NE(all_.find("event: request"), std::string::npos);
  EXPECT_NE(all_.find("ticket=***"), std::string::npos);
  EXPECT_NE(all_.find("/files/***/"), std::string::npos);
  EXPECT_GE(ids.size(), 10U);
  // The browser's own cookie comes in its header.
  const std::string own = cookie_.substr(cookie_.find('=') + 1);
  EXPECT_EQ(all_.find("canary"), std::string::npos);
  EXPECT_EQ(FormIn(all_, kPassword), "");
  for (const std::string& id : ids) EXPECT_EQ(FormIn(all_, id), "") << id;
  EXPECT_EQ(ids.count(own), 0U);
}

}  // namespace
}  // namespace qv::cli

// Which hosts and web pages a request may name.
#include "devservice/http/access_rule.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using Hosts = std::initializer_list<const char*>;

constexpr char kForeignPage[] = "Web pages of other origins may not use this service.\n";
constexpr char kNoHost[] = "The Host header of the request is not the name of a host.\n";

std::string Foreign(const std::string& name) {
  return "This service does not answer to the host name \"" + name +
         "\". If the name is meant for it, start the service with that name: scriptwells serve --name " +
         name + "\n";
}

void ExpectRefusal(const AccessRule& rule, Hosts hosts, const std::string& refusal) {
  for (const char* host : hosts) EXPECT_EQ(rule.Refusal(host, ""), refusal) << host;
}

TEST(AccessRule, Hosts) {
  ExpectRefusal(AccessRule({"127.0.0.1", "Build-Box", "tunnel.example."}),
                {"", "localhost", "LocalHost:80", "localhost.", "127.0.0.1", "127.0.0.1:40123", "127.8.9.1",
                 "[::1]", "[::1]:80", "10.1.2.3:8080", "[2001:db8::7]:1", "build-box", "BUILD-BOX:1",
                 "tunnel.example:443", "localhost:"},
                "");
  const AccessRule rule({"build-box", ""});
  ExpectRefusal(rule, {"evil.example:40123", "Evil.Example."}, Foreign("evil.example"));
  for (const char* host : {"localhost.evil.example", "127.0.0.1.evil.example", "build-box.evil.example",
                           "xbuild-box", "127.1", "0x7f000001", "2130706433", "127.0.0.01", "1.2.3.4.5"})
    EXPECT_EQ(rule.Refusal(host, ""), Foreign(host)) << host;
  const std::string tooLong(256, 'a');
  ExpectRefusal(AccessRule({""}),
                {"localhost, evil.example", "[evil.example]", "[::1", "[::1]x", "[]", "[127.0.0.1]", "::1",
                 ":80", ".", "localhost:80:80", "localhost:8x", "a b", "<script>", "localhost@evil.example",
                 "\x1b[2J", tooLong.c_str()},
                kNoHost);
}

TEST(AccessRule, Pages) {
  const AccessRule rule({"tunnel.example"});
  EXPECT_EQ(rule.Refusal("127.0.0.1:40123", "http://127.0.0.1:40123"), "");
  EXPECT_EQ(rule.Refusal("Tunnel.example", "https://tunnel.Example"), "");
  for (const char* origin :
       {"null", "http://evil.example", "http://127.0.0.1", "http://127.0.0.1:3000", "http://localhost:40123",
        "file://", "https://127.0.0.1:40124", "ftp://127.0.0.1:40123", "127.0.0.1:40123",
        "http://127.0.0.1:40123, http://evil.example"})
    EXPECT_EQ(rule.Refusal("127.0.0.1:40123", origin), kForeignPage) << origin;
  EXPECT_EQ(rule.Refusal("", "http://"), kForeignPage);
}

class Access : public ServiceTest {
 protected:
  std::string StatusWith(const std::string& start, const std::string& headers) {
    return StatusOf(Ask(Request(start, headers)));
  }
};

// The request of a browser whose page made its own name lead to this machine.
TEST_F(Access, ScriptsSentToAForeignNameDoNotRun) {
  const RawAnswer answer =
      Ask(PostRequest("", "CreateUserSession", CreateEnvelope("Username=a;"), "Host: evil.example\r\n"));
  EXPECT_EQ(answer.head.substr(0, 24), "HTTP/1.1 403 Forbidden\r\n");
  EXPECT_EQ(HeaderOf(answer.head, "Connection"), "close");
  EXPECT_EQ(answer.body, Foreign("evil.example"));
  EXPECT_EQ(Stats()["actions"]["CreateUserSession"], 0);
}

TEST_F(Access, EveryPathAndMethodIsGuarded) {
  for (const char* start :
       {"GET /", "GET /stats", "HEAD /", "OPTIONS /", "PUT /", "DELETE /x", "POST /",
        "GET /files/0123456789abcdef0123456789abcdef/", "POST /WebEditor/FileManagerUpload.aspx?ticket=1",
        "GET /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx"}) {
    EXPECT_EQ(StatusWith(start, "Host: evil.example\r\n"), "403") << start;
    EXPECT_EQ(StatusWith(start, "Host: localhost\r\nOrigin: http://evil.example\r\n"), "403") << start;
    EXPECT_EQ(StatusWith(start, "Host: localhost\r\nHost: evil.example\r\n"), "403") << start;
  }
}

TEST_F(Access, OwnPagesAndNamesAreServed) {
  EXPECT_EQ(StatusWith("GET /", "Host: 127.0.0.1:5\r\nOrigin: http://127.0.0.1:5\r\n"), "200");
  EXPECT_EQ(StatusWith("GET /", ""), "200");
  EXPECT_EQ(StatusWith("GET /", "Host:\r\n"), "200");
  StartWith([](ServiceOptions& options) {
    options.host = "localhost";
    options.names = {"Tunnel.example"};
  });
  EXPECT_EQ(StatusWith("GET /", "Host: tunnel.example:80\r\n"), "200");
  EXPECT_EQ(StatusWith("GET /", "Host: localhost:80\r\n"), "200");
  EXPECT_EQ(StatusWith("GET /", "Host: other.example:80\r\n"), "403");
}

// The library would read their bodies into memory, without any limit.
TEST_F(Access, OtherMethodsAreRefusedUnread) {
  const RawAnswer answer = Ask("PUT / HTTP/1.1\r\nHost: localhost\r\nContent-Length: 100000\r\n\r\n");
  EXPECT_EQ(StatusOf(answer), "405");
  EXPECT_EQ(answer.body, "The service takes GET, HEAD and POST only.\n");
}

}  // namespace
}  // namespace qv::devservice::testing

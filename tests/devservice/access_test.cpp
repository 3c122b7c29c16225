#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

class Access : public ServiceTest {
 protected:
  void SetUp() override { StartWith(TestOptions()); }

  RawAnswer Ask(const std::string& bytes) {
    RawClient client(service_->Port());
    client.Send(bytes);
    return client.Receive();
  }
  std::string StatusWith(const std::string& start, const std::string& headers) {
    return Ask(start + " HTTP/1.1\r\n" + headers + "\r\n").head.substr(9, 3);
  }
};

constexpr char kRefusal[] =
    "This service does not answer to the host name \"evil.example\". If the name is meant for it, start the "
    "service with that name: scriptwells serve --name evil.example\n";

// What a browser sends whose page made its own name lead to this machine.
TEST_F(Access, ScriptsSentToAForeignNameDoNotRun) {
  std::string request = PostRequest("", "CreateUserSession", CreateEnvelope("Username=a;"));
  request.replace(request.find("127.0.0.1:80"), 12, "evil.example");
  const RawAnswer answer = Ask(request);
  EXPECT_EQ(answer.head.substr(0, 24), "HTTP/1.1 403 Forbidden\r\n");
  EXPECT_EQ(HeaderOf(answer.head, "Connection"), "close");
  EXPECT_EQ(answer.body, kRefusal);
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

TEST_F(Access, OwnPagesAndClientsWithoutHostAreServed) {
  EXPECT_EQ(StatusWith("GET /", "Host: 127.0.0.1:5\r\nOrigin: http://127.0.0.1:5\r\n"), "200");
  EXPECT_EQ(StatusWith("GET /", ""), "200");
  EXPECT_EQ(StatusWith("GET /", "Host:\r\n"), "200");
}

TEST_F(Access, GivenNamesAndTheListeningNameAreServed) {
  ServiceOptions options = TestOptions();
  options.host = "localhost";
  options.names = {"Tunnel.example"};
  StartWith(options);
  EXPECT_EQ(StatusWith("GET /", "Host: tunnel.example:80\r\n"), "200");
  EXPECT_EQ(StatusWith("GET /", "Host: localhost:80\r\n"), "200");
  EXPECT_EQ(StatusWith("GET /", "Host: other.example:80\r\n"), "403");
}

// The library would read their bodies into memory, beside all limits.
TEST_F(Access, OtherMethodsAreRefusedUnread) {
  const RawAnswer answer = Ask("PUT / HTTP/1.1\r\nHost: localhost\r\nContent-Length: 100000\r\n\r\n");
  EXPECT_EQ(answer.head.substr(0, 12), "HTTP/1.1 405");
  EXPECT_EQ(answer.body, "The service takes GET, HEAD and POST only.\n");
}

}  // namespace
}  // namespace qv::devservice::testing
